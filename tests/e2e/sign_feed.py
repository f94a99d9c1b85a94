#!/usr/bin/env python3
"""Prints a feed of one release, signed with the key that the program of these tests trusts.

usage: sign_feed.py VERSION [CHANNEL]
"""

import base64
import json
import pathlib
import subprocess
import sys
import tempfile

# An Ed25519 key as openssl reads it: the prefix of every key, then 32 bytes, all of them 1 here.
SECRET_KEY = bytes.fromhex("302e020100300506032b657004220420") + b"\1" * 32


def signed_feed(version, channel="stable"):
    release = {"version": version, "channel": channel, "url": f"https://example.org/{version}",
               "notes": f"https://example.org/{version}/news"}
    text = json.dumps({"items": [release]}).encode()
    with tempfile.TemporaryDirectory() as folder:
        key, message = (pathlib.Path(folder, name) for name in ("key", "message"))
        key.write_bytes(SECRET_KEY)
        message.write_bytes(text)
        signature = subprocess.run(
            ["openssl", "pkeyutl", "-sign", "-keyform", "DER", "-inkey", key, "-rawin", "-in",
             message], capture_output=True, check=True).stdout
    return base64.b64encode(signature) + b"\n" + text


if __name__ == "__main__":
    sys.stdout.buffer.write(signed_feed(*sys.argv[1:]))
