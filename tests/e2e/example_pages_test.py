"""The example with pages, a list, a grid, a menu and popups, as a person meets it."""

import e2e

MIDDLE = 180
# The page follows the finger by a part of the way with each picture, of which a sanitized build has
# few a second.
SWIPE_MS = 600 if e2e.SLOW else 150
# Places on a face of 360 pixels.
DINGLE = (MIDDLE, 165)
SEA = (130, 135)
MENU = {"remind": (MIDDLE, 190), "copy": (MIDDLE, 255), "close": (MIDDLE, 315)}


class PagesTest(e2e.TestCase):
    def setUp(self):
        super().setUp()
        # It takes no media, and nothing is missing without.
        self.app = self.start(program="example-pages")
        self.app.wait("page==home")

    # What happened, counted in the log: an action is over when its line has come once more.

    def said(self, text):
        return sum(text == line.text for line in self.app.log())

    def expect(self, text, times=1):
        e2e.wait_until(lambda: self.said(text) >= times, f"'{text}' for the {times}. time")
        self.assertEqual(self.said(text), times)

    def swipe(self, begin, end):
        # A finger finds nothing before the first picture is laid out.
        self.settle()
        self.app.control("drag", begin, MIDDLE, end, MIDDLE, SWIPE_MS)

    def swipe_for(self, line, begin, end):
        """On a busy machine a finger may be gone before the program has seen it move."""
        before = self.said(line)
        for _ in range(5):
            self.swipe(begin, end)
            try:
                e2e.wait_until(lambda: self.said(line) > before, line, 15)
                break
            except AssertionError:
                continue
        self.assertEqual(self.said(line), before + 1)

    def to_next_page(self, number):
        self.swipe_for(f"page {number}, moved by 1", 300, 60)

    def to_page_before(self, number):
        self.swipe_for(f"page {number}, moved by -1", 60, 300)

    def tap(self, place):
        self.app.control("tap", *place)

    def key(self, name):
        self.app.control("key", name)

    def open_harbour(self):
        self.to_next_page(1)
        self.tap(DINGLE)
        self.expect("pushed Dingle")
        self.app.wait("page==harbour")
        self.settle()

    def open_menu(self):
        before = self.said("the menu is open")
        self.key("more")
        self.expect("the menu is open", before + 1)
        self.settle()

    def settle(self):
        """Until two pictures are the same: what comes and goes has come and gone."""
        pictures = [self.app.picture().pixels]

        def at_rest():
            pictures.append(self.app.picture().pixels)
            return pictures[-1] == pictures[-2]

        e2e.wait_until(at_rest, "a still picture")

    def coloured(self, picture, place):
        red, green, blue = picture.at(*place)
        return max(red, green, blue) - min(red, green, blue) > 60

    # The pages.

    def test_a_swipe_moves_by_one_page_and_stops_at_the_ends(self):
        self.assertFalse(self.coloured(self.app.picture(), SEA))
        self.to_next_page(1)
        self.to_next_page(2)
        self.settle()
        self.assertTrue(self.coloured(self.app.picture(), SEA))
        self.swipe(300, 60)
        self.settle()
        self.assertTrue(self.coloured(self.app.picture(), SEA))
        self.to_page_before(1)
        self.to_page_before(0)
        self.swipe(60, 300)
        self.settle()
        self.assertEqual(self.said("page 0, moved by -1"), 1)

    def test_an_entry_of_the_list_opens_its_page_and_back_returns(self):
        self.open_harbour()
        self.key("back")
        self.app.wait("page==home")
        self.app.log_has("Dingle is gone")
        self.assert_in_order(self.app, ["selected Dingle", "pushed Dingle", "popped Dingle",
                                        "home again"])
        e2e.wait_until(lambda: self.said("Dingle is gone"), "the end of the page")
        # The list is as it was, and no entry stays selected.
        self.tap(DINGLE)
        self.expect("selected Dingle", 2)

    def test_an_entry_of_the_grid_attaches_a_popup_to_its_view(self):
        self.to_next_page(1)
        self.to_next_page(2)
        self.tap(SEA)
        self.expect("chose Sea")
        self.assertEqual(self.app.wait("popup!=null")["popup"]["style"], "toast/circle")
        self.app.wait("popup==null")

    # The keys go to what was opened last and is still there.

    def test_a_popup_takes_the_back_key_before_its_page(self):
        self.open_harbour()
        self.open_menu()
        self.tap(MENU["remind"])
        state = self.app.wait("popup!=null")
        self.assertEqual(state["popup"], {"style": "circle", "text": "A reminder at 14:05?"})
        self.key("back")
        self.app.wait("popup==null")
        self.expect("the question is left open")
        self.assertEqual(self.app.state()["page"], "harbour")
        self.assertEqual(self.said("popped Dingle"), 0)
        self.key("back")
        self.app.wait("page==home")

    def test_a_toast_takes_the_back_key_only_while_it_shows(self):
        self.open_harbour()
        self.open_menu()
        self.tap(MENU["copy"])
        self.app.wait("popup!=null")
        self.key("back")
        self.app.wait("popup==null")
        self.assertEqual(self.said("popped Dingle"), 0)
        self.open_menu()
        self.tap(MENU["copy"])
        self.app.wait("popup!=null")
        # It goes by itself, and its object stays.
        self.app.wait("popup==null")
        self.key("back")
        self.app.wait("page==home")

    def test_the_popups_button_opens_the_next_popup_in_its_place(self):
        self.open_harbour()
        self.open_menu()
        self.tap(MENU["remind"])
        self.app.wait("popup!=null")
        self.settle()
        self.tap(self.app.button("popup/circle"))
        self.expect("Reminder set")
        e2e.wait_until(lambda: (self.app.state()["popup"] or {}).get("style") == "toast/circle",
                       "the toast")

    def test_the_menu_takes_the_back_key_before_its_page(self):
        self.open_harbour()
        plain = self.app.picture().pixels
        self.open_menu()
        self.assertNotEqual(self.app.picture().pixels, plain)
        self.key("back")
        e2e.wait_until(lambda: self.app.picture().pixels == plain, "the end of the menu")
        self.assertEqual(self.app.state()["page"], "harbour")
        # The more key closes it as well.
        self.open_menu()
        self.key("more")
        e2e.wait_until(lambda: self.app.picture().pixels == plain, "the end of the menu")

    def test_an_entry_of_the_menu_pops_the_page(self):
        self.open_harbour()
        self.open_menu()
        self.tap(MENU["close"])
        self.app.wait("page==home")
        self.assertEqual(self.said("popped Dingle"), 1)

    def test_the_menu_stays_at_the_lower_edge_of_a_turned_screen(self):
        self.open_harbour()
        self.open_menu()
        self.app.control("rotate", 90)
        self.app.wait("rotation==90")
        self.settle()
        # Its lowest entry now stands at the right of the face, as the picture has been turned.
        x, y = MENU["close"]
        self.tap((y, 2 * MIDDLE - x))
        self.app.wait("page==home")
        self.assertEqual(self.said("popped Dingle"), 1)

    def test_leaving_the_foreground_closes_the_menu(self):
        self.open_harbour()
        plain = self.app.picture().pixels
        self.open_menu()
        self.key("home")
        e2e.wait_until(lambda: self.app.picture().pixels == plain, "the end of the menu")

    def test_ends_well_and_takes_its_pages_along(self):
        self.open_harbour()
        self.app.control("quit")
        self.app.expect_exit(0)
        self.assertNotIn("nothing to play", self.app.text())
        self.assert_in_order(self.app, ["the end", "Dingle is gone"])


if __name__ == "__main__":
    # A sanitized build needs the machine for itself to follow a finger.
    e2e.main(jobs=1 if e2e.SLOW else 3)
