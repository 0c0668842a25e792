"""A static HTTP server on 127.0.0.1 for the remote-access tests.

  dap_server.py ROOT PORTFILE SECONDS

serves the files under ROOT on a free loopback port, writes its port and process id to
PORTFILE and stops by itself after SECONDS. Two paths answer badly on purpose: /garbage/...
with status 200 and a body that is no DAP response, /raw/... with bytes that are not HTTP.
Everything else is http.server's own: files, and 404 for what is not there.
"""

import functools
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
        elif self.path.startswith('/raw/'):
            self.close_connection = True
            self.wfile.write(b'\x16\x03garbage, not HTTP\r\n\r\n')
        else:
            super().do_GET()

    def log_message(self, *args):
        pass


def main(root, portfile, seconds):
    server = http.server.ThreadingHTTPServer(
        ('127.0.0.1', 0), functools.partial(Handler, directory=root))
    server.daemon_threads = True
    with open(portfile + '.tmp', 'w') as out:
        out.write('%d %d' % (server.server_address[1], os.getpid()))
    os.rename(portfile + '.tmp', portfile)
    threading.Timer(seconds, server.shutdown).start()
    server.serve_forever()


if __name__ == '__main__':
    main(sys.argv[1], sys.argv[2], float(sys.argv[3]))
