"""Whatever is written to the control socket, the program plays on."""

import json
import os
import socket
import stat

import e2e


class Socket(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.player = self.play(e2e.LONG)
        self.path = os.path.join(self.environment["XDG_RUNTIME_DIR"], "tessel",
                                 f"control-{self.player.child.pid}.sock")

    def connect(self):
        client = socket.socket(socket.AF_UNIX)
        client.settimeout(e2e.PATIENCE)
        self.addCleanup(client.close)

        def connected():
            try:
                client.connect(self.path)
            except BlockingIOError:  # too many wait to be let in
                return False
            return True
        e2e.wait_until(connected, "a connection")
        return client

    def ask(self, client, request):
        client.sendall(request)
        return self.reply(client)

    def reply(self, client):
        data = b""
        while not data.endswith(b"\n"):
            more = client.recv(65536)
            if not more:
                return None
            data += more
        return json.loads(data)

    def assert_plays(self):
        position = self.player.state()["position"]
        self.player.wait(f"player==playing && position>{position}")

    def test_only_the_user_can_reach_it(self):
        folder = os.stat(os.path.dirname(self.path))
        self.assertEqual(stat.S_IMODE(folder.st_mode), 0o700)
        self.assertEqual(stat.S_IMODE(os.stat(self.path).st_mode), 0o600)

    def test_words_and_arrays_are_the_same_request(self):
        client = self.connect()
        self.assertTrue(self.ask(client, b"state\n")["ok"])
        self.assertTrue(self.ask(client, b"  state \r\n")["ok"])
        self.assertTrue(self.ask(client, b'["state"]\n')["ok"])

    def test_nonsense_is_answered_line_by_line(self):
        client = self.connect()
        for line in (b"\n", b"[]\n", b"[1]\n", b"[\"state\"\n", b"{}\n", b"\xff\xfe\n",
                     b"[\"\xc3\x28\"]\n", b"state\x00\n", b'["state\\u0000"]\n', b"\x1b[2J\n",
                     b"[" * 5000 + b"\n"):
            reply = self.ask(client, line)
            self.assertFalse(reply["ok"], line)
        self.assertTrue(self.ask(client, b"state\n")["ok"])
        self.assert_plays()

    def test_a_request_in_pieces_is_one_request(self):
        client = self.connect()
        for piece in (b"st", b"at", b"e"):
            client.sendall(piece)
        self.assertTrue(self.ask(client, b"\n")["ok"])

    def test_many_requests_at_once_are_answered_in_order(self):
        client = self.connect()
        client.sendall(b"wait position>=0 1000\nnonsense\nstate\n")
        file = client.makefile()
        replies = [json.loads(file.readline()) for _ in range(3)]
        self.assertEqual([reply["ok"] for reply in replies], [True, False, True])
        self.assertIn("waited_ms", replies[0])

    def test_an_endless_line_ends_the_connection(self):
        client = self.connect()
        reply = None
        try:
            client.sendall(b"x" * 1_000_000)
        except OSError:
            pass
        try:
            reply = self.reply(client)
        except ConnectionResetError:
            pass
        if reply is not None:
            self.assertFalse(reply["ok"])
        with self.assertRaises(OSError):
            for _ in range(1000):
                client.sendall(b"x" * 10_000)
        self.assert_plays()

    def test_clients_that_go_in_the_middle_leave_nothing_behind(self):
        for line in (b"", b"sta", b"state\n", b"wait player==none 600000\n",
                     b"drag 10 10 20 20 100\n"):
            for _ in range(8):
                client = self.connect()
                client.sendall(line)
                client.close()
        e2e.wait_until(lambda: self.ask(self.connect(), b"state\n"), "an answer")
        self.assert_plays()

    def test_a_client_that_has_no_more_to_ask_still_gets_its_reply(self):
        client = self.connect()
        client.sendall(b"wait player==none 200\n")
        client.shutdown(socket.SHUT_WR)
        reply = self.reply(client)
        self.assertFalse(reply["ok"])
        self.assertEqual(client.recv(1), b"")

    def test_a_wait_of_one_client_does_not_hold_up_another(self):
        waiting = self.connect()
        waiting.sendall(b"wait player==paused 60000\n")
        other = self.connect()
        self.assertTrue(self.ask(other, b"state\n")["ok"])
        self.press(self.player, "video/pause")
        self.assertTrue(self.reply(waiting)["ok"])

    def test_more_clients_than_it_serves_are_turned_away(self):
        clients = [self.connect() for _ in range(40)]
        answers = 0
        for client in clients:
            try:
                answers += bool(self.ask(client, b"state\n"))
            except OSError:
                pass
        self.assertGreaterEqual(answers, 1)
        self.assertLess(answers, 40)
        for client in clients:
            client.close()
        # Their places are free once the player has seen them go.
        e2e.wait_until(lambda: self.player.try_control("state")[0] == 0, "a free place")
        self.assert_plays()


if __name__ == "__main__":
    e2e.main()
