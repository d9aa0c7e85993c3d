"""What comes over a network: served by this machine to itself."""

import os

import e2e
import media_server

CLIP = "h264_aac.mp4"
CLIP_MS = 10_000


class Streams(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.folder = os.path.join(self.directory, "served")
        os.makedirs(self.folder)
        media_server.copy_into(self.folder, e2e.clip(CLIP), e2e.clip("one_second.mp4"))
        self.server = media_server.MediaServer(self.folder)
        self.addCleanup(self.server.end)

    def start_stream(self, address):
        player = self.start(address)
        player.wait("player==playing")
        return player

    def stream(self, path):
        return self.start_stream(self.server.address(path))

    def seek_forward(self, player):
        """One detent is five seconds."""
        before = player.state()["position"]
        self.turn(player, 1)
        player.wait(f"position>={before + 4000} && player==playing")

    def test_with_ranges_it_can_be_sought_in(self):
        player = self.stream(f"plain/{CLIP}")
        state = player.wait("position>=500")
        self.assertAlmostEqual(state["duration"], CLIP_MS, delta=100)
        self.seek_forward(player)
        player.expect_exit(0)
        self.assertTrue(any("Range" in headers for _, headers in self.server.requests()))

    def test_buffering_is_reported(self):
        player = self.stream(f"plain/{CLIP}")
        player.wait("position>=200")
        self.assertIn("Buffering: [100 %]", player.buffering())
        player.control("quit")
        player.expect_exit(0)

    def test_without_ranges_it_plays_to_its_end(self):
        player = self.stream("no-ranges/one_second.mp4")
        player.expect_exit(0)

    def test_without_ranges_the_bezel_ends_nothing(self):
        player = self.stream(f"no-ranges/{CLIP}")
        player.wait("position>=300")
        self.turn(player, 1)
        position = player.wait("player==playing")["position"]
        player.wait(f"position>{position}")
        player.control("quit")
        player.expect_exit(0)

    def test_live_it_plays_until_it_is_ended(self):
        player = self.stream(f"live/{CLIP}")
        position = player.wait("position>=200")["position"]
        player.wait(f"position>={position + 1500}")
        player.control("quit")
        player.expect_exit(0)

    def test_a_playlist_plays_and_can_be_sought_in(self):
        media_server.make_hls(e2e.clip(CLIP), os.path.join(self.folder, "hls"))
        player = self.stream("plain/hls/list.m3u8")
        state = player.wait("position>=300")
        self.assertAlmostEqual(state["duration"], CLIP_MS, delta=300)
        self.seek_forward(player)
        player.expect_exit(0)

    def test_a_live_playlist_plays_until_it_is_ended(self):
        playlist = media_server.LivePlaylist(e2e.clip(CLIP), os.path.join(self.folder, "live"))
        self.addCleanup(playlist.end)
        player = self.stream("plain/live/list.m3u8")
        # Beyond the pieces that there were at first.
        player.wait(f"position>={(playlist.WINDOW + 1) * 1000}")
        self.assertEqual(player.state()["duration"], 0)
        player.control("quit")
        player.expect_exit(0)

    def test_a_camera_plays(self):
        camera = media_server.Camera(e2e.clip(CLIP))
        self.addCleanup(camera.end)
        player = self.start_stream(camera.address)
        position = player.wait("position>=100")["position"]
        player.wait(f"position>={position + 1500}")
        self.assertGreater(player.state()["frames"]["shown"], 0)
        player.control("quit")
        player.expect_exit(0)

    def test_a_stalled_stream_can_be_paused_and_goes_on_when_data_comes(self):
        player = self.stream(f"stall/{CLIP}")
        player.wait_for_stall()
        self.press(player, "video/pause")
        player.wait("player==paused")
        self.press(player, "video/play")
        player.wait("player==playing")
        position = player.state()["position"]
        self.server.go_on.set()
        player.wait(f"position>={position + 1000}")
        player.expect_exit(0)


if __name__ == "__main__":
    e2e.main(jobs=3)
