"""A static HTTP server for the remote-access tests: dap_server.py ROOT PORTFILE SECONDS serves
ROOT on a free port of 127.0.0.1, writes its port and process id to PORTFILE and stops after
SECONDS. /garbage/... answers status 200 with a body that is no DAP response; all else is
http.server's own (404 for what is not there)."""

from functools import partial
import http.server
import os
import sys
import threading


class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith('/garbage/'):
            self.send_response(200)
            self.end_headers()
            self.wfile.write(b'\x00\x01 this is no DAP response \xff\xfe' * 8)
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
