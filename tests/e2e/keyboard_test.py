"""The buttons by keyboard alone, with the keys of a real display."""

import e2e

VOLUME, MUTE = "video/volume/on", "video/volume/mute"
PAUSE, PLAY = "video/pause", "video/play"


class Keyboard(e2e.DisplayTestCase):
    def focused(self, player):
        return [button["style"] for button in player.state()["buttons"] if button["focused"]]

    def show_by_key(self, player):
        if not player.state()["controls"]:
            self.key(player, "space")
            player.wait("controls==true")

    def go_to(self, player, style):
        """With Tab, as a person does who looks where the focus is."""
        def has_come():
            # They go while a slow machine looks.
            self.show_by_key(player)
            self.key(player, "Tab")
            return self.focused(player) == [style]
        e2e.wait_until(has_come, f"the focus of {style}")

    def rim(self, player, style):
        """What is drawn where the focus shows, left and right of a button."""
        button = next(each for each in player.state()["buttons"] if each["style"] == style)
        middle = button["y"] + button["height"] // 2
        picture = player.picture()
        return [picture.at(x, middle) for x in (button["x"] - 2, button["x"] + button["width"] + 1)]

    def settled_rim(self, player, style):
        """The same when it has stopped moving: controls come and go softly."""
        seen = []

        def is_settled():
            seen.append(self.rim(player, style))
            return len(seen) > 3 and len(set(map(str, seen[-3:]))) == 1
        e2e.wait_until(is_settled, "an end of the motion")
        return seen[-1]

    def press_until(self, player, condition):
        def holds():
            # Where the controls have gone meanwhile this shows them, and the next presses.
            self.key(player, "Return")
            return player.try_control("wait", condition, 1000)[0] == 0
        e2e.wait_until(holds, condition)

    def test_space_shows_the_controls_and_tab_walks_them(self):
        player = self.play(e2e.LONG)

        def walk():
            self.show_by_key(player)
            seen = []
            for name in ("Tab", "Tab", "Tab", "Tab", "shift+Tab"):
                self.key(player, name)
                seen += self.focused(player)
            return seen if len(seen) == 5 else None

        seen = e2e.wait_until(walk, "a walk before the controls go")
        self.assertEqual(len(set(seen[:3])), 3)
        self.assertEqual((seen[3], seen[4]), (seen[0], seen[2]))

    def test_return_presses_the_button_and_stays_at_it(self):
        player = self.play(e2e.LONG)
        self.go_to(player, PAUSE)
        self.press_until(player, "player==paused")
        self.show_by_key(player)
        self.assertEqual(self.focused(player), [PLAY])
        self.press_until(player, "player==playing")

    def test_hidden_controls_take_no_focus(self):
        player = self.play(e2e.LONG)
        self.key(player, "Tab")
        self.assertEqual(self.focused(player), [])
        self.assertFalse(player.state()["controls"])
        self.go_to(player, PAUSE)
        player.wait("controls==false")
        # It presses nothing that can't be seen: it shows the controls.
        self.key(player, "Return")
        self.assertEqual(player.wait("controls==true")["player"], "playing")

    def test_the_volume_screen_and_back(self):
        player = self.play(e2e.LONG)
        self.go_to(player, VOLUME)
        self.press_until(player, "page==tsl_volume_view")
        self.key(player, "Escape")
        player.wait("page==tsl_player_view")
        self.key(player, "Escape")
        player.expect_exit(0)

    def assert_ring(self, player, style):
        """The ring is at the button: the picture changes when the focus goes on."""
        focused = self.settled_rim(player, style)
        self.key(player, "Tab")
        self.assertNotEqual(focused, self.settled_rim(player, style))

    def play_with_lasting_controls(self):
        """Nothing else moves on the screen, whose clip has no pictures, and the controls stay."""
        player = self.play(e2e.SOUND)
        player.control("screen-reader", "on")
        player.wait("screen_reader==true")
        self.show_by_key(player)
        return player

    def test_the_focus_still_shows_after_a_press(self):
        player = self.play_with_lasting_controls()
        self.go_to(player, PAUSE)
        self.press_until(player, "player==paused")
        self.assert_ring(player, PLAY)

    def test_the_focus_still_shows_when_the_button_gets_another_picture(self):
        player = self.play_with_lasting_controls()
        player.control("volume", 5)
        self.go_to(player, VOLUME)
        player.control("volume", 0)
        e2e.wait_until(lambda: self.focused(player) == [MUTE], "the muted picture")
        self.assert_ring(player, MUTE)


if __name__ == "__main__":
    e2e.main()
