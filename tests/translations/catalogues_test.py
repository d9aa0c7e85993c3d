"""The message catalogues as they are installed: each has every text, in its own script, with the
placeholders that the id promises."""

import collections
import gettext
import glob
import os
import re
import unicodedata
import unittest

LOCALES = os.environ["TESSEL_LOCALES"]
SOURCES = os.environ["TESSEL_SOURCES"]

LANGUAGES = {"en", "de", "fr", "es", "pt_BR", "it", "pl", "ru", "tr", "ar", "he", "hi", "th", "vi",
             "zh_CN", "ja", "ko"}

# First word of the Unicode names of a script's letters. A script that isn't named is Latin.
SCRIPTS = {
    "ru": {"CYRILLIC"}, "ar": {"ARABIC"}, "he": {"HEBREW"}, "hi": {"DEVANAGARI"}, "th": {"THAI"},
    "zh_CN": {"CJK"}, "ja": {"CJK", "HIRAGANA", "KATAKANA", "KATAKANA-HIRAGANA"},
    "ko": {"HANGUL"},
}
# Letters that the language can't do without, so that one isn't taken for another of its script.
OWN_LETTERS = {
    "de": "äöüß", "fr": "éàçêè", "es": "áéíóúñ", "pt_BR": "ãçõ", "it": "", "pl": "ąęłńśż",
    "tr": "ığşç", "vi": "ạảấếộ", "zh_CN": "频这显无调", "ja": "のをる", "ru": "ыйь",
}

# Texts that are the same in English: names and signs, and words that the languages share.
SHARED = {"IDS_CLOUD_BODY_DROPBOX_ABB", "IDS_VIDEO_BODY_B", "IDS_VIDEO_BODY_KB",
          "IDS_VIDEO_BODY_MB", "IDS_VIDEO_BODY_GB"}
VOLUME = {"IDS_MUSIC_OPT_VOLUME", "WDS_ST_MBODY_VOLUME_ABB"}
LIKE_ENGLISH = {
    "de": {"WDS_MUSIC_OPT_PAUSE"},
    "fr": VOLUME | {"WDS_MUSIC_OPT_PAUSE", "WDS_ST_OPT_1_MINUTE_ABB", "WDS_ST_OPT_PD_MINUTES_ABB"},
    "it": VOLUME,
    "pt_BR": VOLUME,
}
# Latin letters in a text of another script: only these.
LATIN_WORDS = {"Dropbox", "SD", "B", "KB", "MB", "GB"}

# Shown on the round screen, where more letters don't fit.
SHOWN = ("IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO", "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST",
         "IDS_VPL_POP_INVALID_URL", "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB",
         "IDS_VPL_POP_UNSUPPORTED_VIDEO_FORMAT", "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT")
MOST_LETTERS = 32

ID = re.compile(r'"([IW]DS_[A-Z0-9_]+)"')
PLACEHOLDER = re.compile(r"%(?:\d+\$)?[a-zA-Z]|%")


def catalogue(language):
    path = os.path.join(LOCALES, language, "LC_MESSAGES", "tessel.mo")
    with open(path, "rb") as file:
        texts = gettext.GNUTranslations(file)._catalog
    return {id: text for id, text in texts.items() if id}


def placeholders_of_id(id):
    """What the id promises: P1SD is a first place for a number, PD the only one."""
    found = []
    for word in id.split("_"):
        match = re.fullmatch(r"P(\d?)(S?)([SD])", word)
        if match:
            number, kind = match.group(1), match.group(3).lower()
            found.append(f"%{number}${kind}" if number else f"%{kind}")
    return sorted(found)


def ids_of_program():
    found = set()
    for folder in ("src", "inc"):
        for path in glob.glob(os.path.join(SOURCES, folder, "**", "*.*"), recursive=True):
            with open(path, encoding="utf-8") as file:
                found.update(ID.findall(file.read()))
    return found


def letters(text):
    return [letter for letter in PLACEHOLDER.sub("", text) if letter.isalpha()]


def script_of(letter):
    return unicodedata.name(letter).split(" ")[0]


def per_language(check):
    def test(self):
        for language, texts in sorted(self.catalogues.items()):
            with self.subTest(language=language):
                check(self, language, texts)
    return test


class Catalogues(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.catalogues = {language: catalogue(language) for language in os.listdir(LOCALES)}
        cls.english = cls.catalogues["en"]

    def test_every_language_is_there(self):
        self.assertEqual(set(self.catalogues), LANGUAGES)

    def test_english_has_what_the_program_asks_for(self):
        ids = ids_of_program()
        self.assertGreater(len(ids), 20, "the sources were not found")
        self.assertEqual(ids - set(self.english), set())

    @per_language
    def test_all_have_the_same_ids(self, _language, texts):
        self.assertEqual(set(texts), set(self.english))

    @per_language
    def test_no_text_is_empty_or_a_bare_id(self, _language, texts):
        bare = [id for id, text in texts.items() if not text.strip() or ID.match(f'"{text}"')]
        self.assertEqual(bare, [])

    @per_language
    def test_no_text_has_blanks_around_it(self, _language, texts):
        self.assertEqual([text for text in texts.values() if text != text.strip()], [])

    @per_language
    def test_placeholders_are_those_that_the_id_promises(self, _language, texts):
        for id, text in texts.items():
            self.assertEqual(sorted(PLACEHOLDER.findall(text)), placeholders_of_id(id), id)

    @per_language
    def test_texts_are_in_the_script_of_their_language(self, language, texts):
        scripts = SCRIPTS.get(language, {"LATIN"})
        for id, text in texts.items():
            foreign = PLACEHOLDER.sub("", text)
            if scripts != {"LATIN"}:
                foreign = re.sub(r"[A-Za-z]+", lambda word: "" if word.group() in LATIN_WORDS
                                 else word.group(), foreign)
            wrong = [letter for letter in letters(foreign) if script_of(letter) not in scripts]
            self.assertEqual(wrong, [], f"{id}: {text}")

    @per_language
    def test_each_language_writes_its_own_letters(self, language, texts):
        whole = "".join(texts.values()).lower()
        wanted = OWN_LETTERS.get(language, "")
        if wanted:
            self.assertTrue(set(wanted) & set(whole), f"none of {wanted}")

    def test_chinese_has_no_kana_and_japanese_has_both_kinds(self):
        def scripts(language):
            return collections.Counter(
                script_of(letter) for text in self.catalogues[language].values()
                for letter in letters(text))
        self.assertFalse({"HIRAGANA", "KATAKANA"} & set(scripts("zh_CN")))
        self.assertTrue({"HIRAGANA", "KATAKANA", "CJK"} <= set(scripts("ja")))

    @per_language
    def test_texts_are_translated(self, language, texts):
        if language == "en":
            return
        same = {id for id, text in texts.items() if text == self.english[id]}
        self.assertEqual(same - SHARED - LIKE_ENGLISH.get(language, set()), set())

    def test_no_two_languages_are_the_same(self):
        sentences = {}
        for language, texts in sorted(self.catalogues.items()):
            sentence = texts["IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO"]
            self.assertNotIn(sentence, sentences, f"{language} and {sentences.get(sentence)}")
            sentences[sentence] = language

    @per_language
    def test_texts_of_the_screen_are_short(self, _language, texts):
        long = [texts[id] for id in SHOWN
                if sum(not unicodedata.combining(c) for c in texts[id]) > MOST_LETTERS]
        self.assertEqual(long, [])

    @per_language
    def test_opposite_buttons_have_different_names(self, _language, texts):
        for one, other in (("WDS_MUSIC_OPT_PLAY", "WDS_MUSIC_OPT_PAUSE"),
                           ("IDS_ACCS_OPT_INCREASE_VOLUME", "IDS_ACCS_OPT_DECREASE_VOLUME"),
                           ("WDS_ACCS_TBOPT_MUTE", "WDS_ACCS_TBOPT_UNMUTE"),
                           ("WDS_GALLERY_TBOPT_CROP_TO_FIT", "WDS_GALLERY_TBOPT_FIT_TO_SCREEN")):
            self.assertNotEqual(texts[one], texts[other])


if __name__ == "__main__":
    unittest.main()
