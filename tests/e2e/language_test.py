"""The language: that of the system, also when it changes while the program runs."""

import os

import e2e

# What the program says of a file that is no video.
UNSUPPORTED = {"en_US": "Unsupported format", "de_DE": "Format nicht unterstützt",
               "pt_BR.UTF-8": "Formato não suportado", "ar_EG": "تنسيق غير مدعوم",
               "zh_CN": "不支持的格式", "ko": "미지원 형식"}


class Language(e2e.TestCase):
    def no_video(self):
        path = os.path.join(self.directory, "text.mp4")
        with open(path, "w", encoding="utf-8") as file:
            file.write("no video\n" * 1000)
        return path

    def text(self, player):
        state = player.state()
        return state["popup"] and state["popup"]["text"]

    def start_with(self, **variables):
        for name in ("LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"):
            self.environment.pop(name, None)
        self.environment.update(variables)
        player = self.start(self.no_video())
        e2e.wait_until(lambda: self.text(player), "the message")
        return player

    def test_without_any_locale_it_is_english(self):
        self.assertEqual(self.text(self.start_with()), UNSUPPORTED["en_US"])

    def test_the_plain_locale_is_english(self):
        self.assertEqual(self.text(self.start_with(LC_ALL="C")), UNSUPPORTED["en_US"])

    def test_it_is_that_of_the_environment(self):
        for variables, language in (({"LANG": "de_DE.UTF-8"}, "de_DE"),
                                    ({"LANG": "C.UTF-8", "LANGUAGE": "ko"}, "ko"),
                                    ({"LC_ALL": "zh_CN.UTF-8"}, "zh_CN")):
            with self.subTest(variables):
                self.assertEqual(self.text(self.start_with(**variables)), UNSUPPORTED[language])

    def test_one_without_translations_is_english(self):
        self.assertEqual(self.text(self.start_with(LANG="eo.UTF-8")), UNSUPPORTED["en_US"])

    def test_a_message_on_the_screen_follows_it(self):
        player = self.start_with()
        for language, text in UNSUPPORTED.items():
            player.control("language", language)
            self.assertEqual(self.text(player), text)

    def test_what_is_no_language_changes_nothing(self):
        player = self.start_with(LANG="de_DE.UTF-8")
        for word in ("", "1", "../de", "d" * 65, "de DE"):
            status, reply = player.try_control("language", word)
            self.assertEqual(status, 2, reply)
        self.assertEqual(self.text(player), UNSUPPORTED["de_DE"])

    def test_a_language_that_was_set_stays_for_the_next_start(self):
        player = self.start_with()
        player.control("language", "fr_FR")
        player.end()
        self.assertEqual(self.text(self.start_with()), "Format non pris en charge")

    def test_the_screen_is_mirrored_from_right_to_left(self):
        player = self.play(e2e.LONG)
        volume = "video/volume/on", "video/volume/mute"

        def place():
            self.show_controls(player)
            places = {button["style"]: button["x"] for button in player.state()["buttons"]}
            side = next(places[style] for style in volume if style in places)
            ratio = next(places[style] for style in places if "displaymode" in style)
            return "left" if side < ratio else "right"
        self.assertEqual(place(), "left")
        player.control("language", "he_IL")
        e2e.wait_until(lambda: place() == "right", "the mirrored screen")
        player.control("language", "en_GB")
        e2e.wait_until(lambda: place() == "left", "the screen of before")


if __name__ == "__main__":
    e2e.main()
