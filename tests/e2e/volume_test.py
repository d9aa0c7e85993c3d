"""The volume screen: what changes the level, what it shows, and how it comes and goes."""

import math
import time

import e2e
from sound_test import SoundServer

PLUS, MINUS, MUTE = ("video/volume/event_expanded_right", "video/volume/event_expanded_left",
                     "video/more_volume")
PAGE, PLAYER_PAGE = "tsl_volume_view", "tsl_player_view"
SIDE = 360
# Of the bar, in the middle of its line.
RADIUS = 170
CLOSES_AFTER = 3.0


class VolumeScreen:
    """What a person does and sees on it."""

    def play_at(self, level):
        """A player at a level, with the volume screen open."""
        player = self.play(e2e.LONG)
        player.control("volume", level)
        self.open(player)
        player.wait(f'level=="{level}"')
        return player

    def open(self, player):
        self.press(player, "video/volume/on")
        player.wait(f"page=={PAGE} && level!=null")
        # The toolkit takes no touch while the page comes in.
        e2e.wait_until(lambda: len(player.state()["buttons"]) == 3, "the three buttons")

    def level(self, player, level):
        player.wait(f'volume=={level} && level=="{level}"')

    def bar_is_at(self, player, level):
        """Whether the bar ends at the level, as it is seen on the screen."""
        picture = self.screen(player)
        angle = level * 24

        def is_bar(degrees):
            red, green, blue = picture.at(*self.on_rim(degrees))
            return max(red, green, blue) - min(red, green, blue) > 90
        inside = [degrees for degrees in range(6, 360, 6) if degrees < angle - 4]
        outside = [degrees for degrees in range(6, 357, 6) if degrees > angle + 4]
        return all(map(is_bar, inside)) and not any(map(is_bar, outside))

    @staticmethod
    def on_rim(degrees, radius=RADIUS):
        angle = math.radians(degrees)
        return (round(SIDE / 2 + radius * math.sin(angle)),
                round(SIDE / 2 - radius * math.cos(angle)))


class Volume(VolumeScreen):
    def test_a_turn_of_the_bezel_changes_the_level(self):
        player = self.play_at(5)
        self.turn(player, 1)
        self.level(player, 6)
        # Half a second from the first, so that each is one step.
        self.turn(player, 3, 200)
        self.level(player, 9)
        self.turn(player, -2, 200)
        self.level(player, 7)
        e2e.wait_until(lambda: self.bar_is_at(player, 7), "the bar at its level")
        # The bezel doesn't seek meanwhile.
        self.assertFalse(player.log_has("Event count"))
        self.assertEqual(player.state()["player"], "playing")

    def test_two_quick_presses_of_plus_raise_by_two(self):
        player = self.play_at(5)
        self.double_touch(player, *player.button(PLUS))
        self.level(player, 7)
        self.double_touch(player, *player.button(MINUS))
        self.level(player, 5)

    def test_mute_comes_back_to_the_level(self):
        player = self.play_at(7)
        self.touch(player, *player.button(MUTE))
        self.level(player, 0)
        e2e.wait_until(lambda: self.bar_is_at(player, 0), "the empty bar")
        self.touch(player, *player.button(MUTE))
        self.level(player, 7)

    def test_the_ends_of_the_scale_take_the_buttons(self):
        player = self.play_at(14)

        def is_enabled(style):
            return next(button["enabled"] for button in player.state()["buttons"]
                        if button["style"] == style)
        self.touch(player, *player.button(PLUS))
        self.level(player, 15)
        e2e.wait_until(lambda: not is_enabled(PLUS), "the end of plus")
        self.assertTrue(is_enabled(MINUS))
        self.touch(player, *self.on_rim(4))
        self.level(player, 0)
        e2e.wait_until(lambda: not is_enabled(MINUS), "the end of minus")
        self.assertTrue(is_enabled(PLUS))

    def test_a_touch_on_the_rim_sets_the_level_there(self):
        player = self.play_at(5)
        for degrees, level in ((90, 3), (180, 7), (270, 11), (356, 15)):
            self.touch(player, *self.on_rim(degrees))
            self.level(player, level)
        e2e.wait_until(lambda: self.bar_is_at(player, 15), "the whole ring")

    def test_a_change_from_outside_is_shown(self):
        player = self.play_at(5)
        player.control("volume", 11)
        player.wait('level=="11"')
        e2e.wait_until(lambda: self.bar_is_at(player, 11), "the bar at its level")

    def test_it_closes_three_seconds_after_the_last_input(self):
        player = self.play_at(5)
        until = time.monotonic() + 2.0
        while time.monotonic() < until:
            self.touch(player, SIDE // 2, SIDE // 2)
        last = time.monotonic()
        player.wait(f"page=={PLAYER_PAGE}")
        self.assertGreaterEqual(time.monotonic() - last, CLOSES_AFTER - 0.3)
        # The bezel is the player screen's again.
        start = player.state()["position"]
        self.turn(player, 1)
        player.wait(f"position>={start + 9000}")

    def test_back_closes_it_and_the_film_goes_on(self):
        player = self.play_at(5)
        player.control("key", "back")
        player.wait(f"page=={PLAYER_PAGE}")
        self.assertEqual(player.state()["player"], "playing")

    def test_another_video_while_it_comes_closes_it(self):
        player = self.play(e2e.LONG)
        player.control("volume", 5)
        self.press(player, "video/volume/on")
        player.control("launch", e2e.clip(e2e.SHORT))
        player.wait(f"page=={PLAYER_PAGE} && player==playing")
        self.assertTrue(player.state()["uri"].endswith(e2e.SHORT))


class HeadlessVolume(Volume, e2e.TestCase):
    def test_the_level_warns_above_the_safe_one(self):
        player = self.play(e2e.LONG)
        player.control("device", "connect", "earjack")
        player.control("volume", 9)
        self.open(player)

        def colour_of_bar():
            red, _, blue = self.screen(player).at(*self.on_rim(90))
            return "warning" if red > blue + 60 else "normal" if blue > red + 60 else "neither"
        e2e.wait_until(lambda: colour_of_bar() == "normal", "the normal colour")
        self.turn(player, 1)
        self.level(player, 10)
        e2e.wait_until(lambda: colour_of_bar() == "warning", "the warning colour")
        self.turn(player, -1, 200)
        self.level(player, 9)
        e2e.wait_until(lambda: colour_of_bar() == "normal", "the normal colour again")

    def test_routes_come_and_go_while_it_is_open(self):
        player = self.start("--profile", "watch", e2e.clip(e2e.LONG))
        player.wait("player==playing")
        # The watch's own speaker is no route.
        player.control("device", "connect", "earjack")
        player.control("volume", 5)
        self.open(player)
        player.control("device", "connect", "bluetooth")
        player.control("device", "disconnect", "earjack")
        self.turn(player, 1)
        self.level(player, 6)
        self.assertEqual(player.state()["page"], PAGE)
        player.control("device", "disconnect", "bluetooth")
        player.wait(f"page=={PLAYER_PAGE}")
        # The bezel is the player screen's again.
        self.turn(player, 1)
        # The controls of before may go, and come with the bezel, between two looks.
        button = e2e.wait_until(
            lambda: next((button for button in player.state()["buttons"]
                          if button["style"].startswith("video/volume/")), None),
            "the button of the volume")
        self.assertFalse(button["enabled"])
        self.assertEqual(button["style"], "video/volume/mute")


class ServersVolume(VolumeScreen, e2e.TestCase):
    """The level of a sound server, which anybody may change."""

    def setUp(self):
        super().setUp()
        self.server = SoundServer(self.directory)
        self.addCleanup(self.server.end)
        self.environment["PULSE_SERVER"] = self.server.name

    def test_a_change_of_the_server_is_shown(self):
        player = self.play_at(5)
        self.server.pactl("set-sink-volume", "@DEFAULT_SINK@", "80%")
        self.level(player, 12)
        e2e.wait_until(lambda: self.bar_is_at(player, 12), "the bar at its level")

    def test_a_turn_of_the_bezel_is_heard_by_the_server(self):
        player = self.play_at(5)
        self.turn(player, 1)
        self.level(player, 6)
        e2e.wait_until(lambda: " 40% " in self.server.volume(), "the level of the server")

    def test_sinks_come_and_go_while_it_is_open(self):
        player = self.play_at(5)
        module = self.server.pactl("load-module", "module-null-sink", "sink_name=phones",
                                   "sink_properties=device.form_factor=headphone").strip()
        # The headphones are the output now, at a level of their own, which is above the safe one.
        self.level(player, 15)
        self.server.pactl("unload-module", module)
        self.level(player, 5)
        self.assertEqual(player.state()["page"], PAGE)


class DisplayVolume(Volume, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()
