"""A static HTTP server on 127.0.0.1 for the remote-access tests.

  dap_server.py ROOT PORTFILE SECONDS

serves the files under ROOT on a free loopback port, writes its port and process id to
PORTFILE and stops by itself after SECONDS. Three paths answer badly on purpose: /garbage/...
with status 200 and a body that is no DAP response, /raw/... with bytes that are not HTTP,
and /silent/... not at all for 20 s (to show netCDF-C's HTTP.TIMEOUT).
Everything else is http.server's own: files, and 404 for what is not there.
"""

from functools import partial
import http.server
import os
import sys
import threading
import time


class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith('/garbage/'):
            self.send_response(200)
            self.end_headers()
            self.wfile.write(b'\x00\x01 this is no DAP response \xff\xfe' * 8)
        elif self.path.startswith('/raw/'):
            self.close_connection = True
            self.wfile.write(b'\x16\x03garbage, not HTTP\r\n\r\n')
        elif self.path.startswith('/silent/'):
            time.sleep(20)
            self.close_connection = True
        else:
            super().do_GET()


root, portfile, seconds = sys.argv[1:]
server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), partial(Handler, directory=root))
# Written whole before it appears: the test reads it as soon as it exists.
with open(portfile + '.tmp', 'w') as out:
    out.write('%d %d' % (server.server_address[1], os.getpid()))
os.rename(portfile + '.tmp', portfile)
threading.Timer(float(seconds), server.shutdown).start()
server.serve_forever()
