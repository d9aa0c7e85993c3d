"""Theme tables that are missing or damaged: a warning each, the theme's own colours, and the video."""

import os
import shutil

import e2e

COLORS = "com.orvane.tessel_ChangeableColorInfo.xml"
FONTS = "com.orvane.tessel_ChangeableFontInfo.xml"
NO_COLORS = "It is faild to create color table."
NO_FONTS = "It is faild to create font table."


def entity_bomb(root):
    entities = ['<!ENTITY a0 "boom">']
    entities += [f'<!ENTITY a{n} "{f"&a{n - 1};" * 10}">' for n in range(1, 12)]
    return f'<?xml version="1.0"?><!DOCTYPE {root} [{"".join(entities)}]><{root}>&a11;</{root}>'


class Tables(e2e.TestCase):
    def setUp(self):
        super().setUp()
        # A program of its own, whose files can be damaged.
        self.root = os.path.join(self.directory, "installed")
        shutil.copytree(os.path.join(e2e.BIN, "..", "share"), os.path.join(self.root, "share"))
        os.makedirs(os.path.join(self.root, "bin"))
        for program in ("tessel", "tesselctl"):
            shutil.copy(os.path.join(e2e.BIN, program), os.path.join(self.root, "bin"))
        real, e2e.BIN = e2e.BIN, os.path.join(self.root, "bin")
        self.addCleanup(setattr, e2e, "BIN", real)

    def table(self, name):
        return os.path.join(self.root, "share", "tessel", "shared", "tables", name)

    def play_and_show(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        return player

    def warnings(self, player):
        return [line.text for line in player.log() if line.level == "W" and " table." in line.text]

    def controls(self, player):
        """The play button, where the picture doesn't show through, once it has come to rest."""
        player.control("tap", *player.button("video/pause"))
        player.wait("player==paused")
        x, y = player.button("video/play")
        def look():
            return player.picture().part(x - 30, y - 30, 60, 60).pixels
        def look_at_rest():
            before = look()
            return before if look() == before else None
        return e2e.wait_until(look_at_rest, "the button's rest")

    def test_both_tables_are_taken(self):
        self.assertEqual(self.warnings(self.play_and_show()), [])

    def test_a_missing_colour_table_leaves_the_fonts_and_the_looks(self):
        usual = self.controls(self.play_and_show())
        os.remove(self.table(COLORS))
        player = self.play_and_show()
        self.assertEqual(self.warnings(player), [NO_COLORS])
        self.assertEqual(self.controls(player), usual)

    def test_a_missing_font_table_leaves_the_colours(self):
        os.remove(self.table(FONTS))
        self.assertEqual(self.warnings(self.play_and_show()), [NO_FONTS])

    def test_hostile_tables_cost_a_warning(self):
        for what, damage in (
                ("an entity bomb", lambda path, root: self.write(path, entity_bomb(root).encode())),
                ("the wrong encoding", self.write_in_utf_16),
                ("half a file", lambda path, root: self.write(path, f"<{root}><".encode())),
                ("100 megabytes", lambda path, root: os.truncate(path, 100 << 20)),
                ("a pipe", self.make_pipe)):
            with self.subTest(what):
                damage(self.table(COLORS), "colors")
                damage(self.table(FONTS), "fonts")
                player = self.play_and_show()
                self.assertEqual(self.warnings(player), [NO_COLORS, NO_FONTS])
                player.end()

    def test_a_colour_of_the_table_shows(self):
        usual = self.controls(self.play_and_show())
        with open(self.table(COLORS), encoding="utf-8") as file:
            text = file.read()
        self.write(self.table(COLORS),
                   text.replace('"TESSEL_GLYPH_PRIMARY" rgba="#10141bff"',
                                '"TESSEL_GLYPH_PRIMARY" rgba="#c00000ff"').encode())
        player = self.play_and_show()
        self.assertEqual(self.warnings(player), [])
        self.assertNotEqual(self.controls(player), usual)

    @staticmethod
    def write(path, data):
        with open(path, "wb") as file:
            file.write(data)

    def write_in_utf_16(self, path, root):
        self.write(path, f'<?xml version="1.0" encoding="UTF-8"?><{root}/>'.encode("utf-16"))

    @staticmethod
    def make_pipe(path, _root):
        os.remove(path)
        os.mkfifo(path)


if __name__ == "__main__":
    e2e.main()
