"""With the toolkit set to larger texts all of them stay on the round face."""

import e2e

LARGE = "1.3"
# Nothing is written this near to the edge.
MARGIN = 4
BRIGHT = 170
# Between a message and its button, from the middle.
ABOVE_BUTTON = 50


class LargeText(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.pictures = 0

    def bright_places(self, player):
        """Where the round screen is bright, from its middle."""
        self.pictures += 1
        picture = player.picture(f"look{self.pictures}")
        half = picture.width / 2
        return [(x + 0.5 - half, y + 0.5 - half)
                for y in range(picture.height) for x in range(picture.width)
                if (x + 0.5 - half) ** 2 + (y + 0.5 - half) ** 2 < (half - 1) ** 2
                and picture.luma(x, y) >= BRIGHT]

    def assert_on_the_face(self, player, places):
        self.assertTrue(places)
        side = player.state()["screen"]["width"]
        furthest = max((x * x + y * y) ** 0.5 for x, y in places)
        self.assertLessEqual(furthest, side / 2 - MARGIN)
        for button in player.state()["buttons"]:
            for x in (button["x"], button["x"] + button["width"]):
                for y in (button["y"], button["y"] + button["height"]):
                    distance = ((x - side / 2) ** 2 + (y - side / 2) ** 2) ** 0.5
                    self.assertLessEqual(distance, side / 2, button)

    def start_at(self, scale, *arguments):
        self.environment["ELM_SCALE"] = scale
        return self.start(*arguments)

    def test_the_controls(self):
        player = self.start_at(LARGE, e2e.clip(e2e.SOUND))
        player.wait("player==playing")

        def look():
            self.show_controls(player)
            places = self.bright_places(player)
            # Also the times, which come last.
            is_all = player.state()["controls"] and any(y > 60 for _, y in places)
            return places if is_all else None

        self.assert_on_the_face(player, e2e.wait_until(look, "a look at the controls"))

    def test_a_message_grows_and_stays(self):
        heights = []
        for scale in ("1.0", LARGE):
            player = self.start_at(scale, e2e.clip("text.mp4"))
            self.assertEqual(player.wait("popup!=null")["popup"]["style"], "circle")
            places = self.settled_places(player)
            self.assert_on_the_face(player, places)
            text = [y for _, y in places if y < ABOVE_BUTTON]
            heights.append(max(text) - min(text))
            player.end()
        self.assertGreater(heights[1], heights[0] * 1.1)

    def test_the_volume_screen(self):
        player = self.start_at(LARGE, e2e.clip(e2e.SOUND))
        player.wait("player==playing")
        self.press(player, "video/volume/on")
        player.wait("page==tsl_volume_view && level!=null")
        # Those of the screen before it go softly.
        e2e.wait_until(lambda: len(player.state()["buttons"]) == 3, "the volume screen alone")
        buttons = player.state()["buttons"]
        side = player.state()["screen"]["width"]
        for button in buttons:
            middle = (button["x"] + button["width"] / 2 - side / 2,
                      button["y"] + button["height"] / 2 - side / 2)
            self.assertLessEqual((middle[0] ** 2 + middle[1] ** 2) ** 0.5 + button["width"] / 2,
                                 side / 2, button)

    def settled_places(self, player):
        seen = []

        def is_settled():
            seen.append(self.bright_places(player))
            return len(seen) > 1 and seen[-1] and seen[-1] == seen[-2]
        e2e.wait_until(is_settled, "an end of the motion")
        return seen[-1]


if __name__ == "__main__":
    e2e.main()
