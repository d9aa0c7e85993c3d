"""Serves one clip again and again over RTSP on the loopback interface: rtsp_server.py CLIP

Prints its address when it listens. Debian's own interpreter runs it, for its libraries.
"""

import sys

import gi

gi.require_version("Gst", "1.0")
gi.require_version("GstRtspServer", "1.0")
from gi.repository import GLib, Gst, GstRtspServer  # noqa: E402

Gst.init(None)
server = GstRtspServer.RTSPServer()
server.set_address("127.0.0.1")
server.set_service("0")
factory = GstRtspServer.RTSPMediaFactory()
factory.set_launch(f'( filesrc location="{sys.argv[1]}" ! qtdemux name=d '
                   "d.video_0 ! queue ! h264parse ! rtph264pay name=pay0 config-interval=-1 "
                   "d.audio_0 ! queue ! aacparse ! rtpmp4gpay name=pay1 )")
server.get_mount_points().add_factory("/clip", factory)
server.attach(None)
print(f"rtsp://127.0.0.1:{server.get_bound_port()}/clip", flush=True)
GLib.MainLoop().run()
