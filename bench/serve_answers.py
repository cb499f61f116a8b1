#!/usr/bin/env python3
"""Serves the recorded weather answers on loopback for benchmarks: /<service>/... → the service's
file in tests/e2e/answers. Prints its base URL, then serves until killed."""
import http.server
import pathlib
import sys

ANSWERS = pathlib.Path(__file__).resolve().parent.parent / "tests" / "e2e" / "answers"
FILES = {"forecast": "forecast.json", "air-quality": "air-quality.json", "ipapi": "ipapi.json"}


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        name = FILES.get(self.path.strip("/").split("/")[0])
        if name is None:
            self.send_error(404)
            return
        body = (ANSWERS / name).read_bytes()
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *args):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
print(f"http://127.0.0.1:{server.server_address[1]}", flush=True)
server.serve_forever()
