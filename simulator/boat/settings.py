"""The N6's settings and the archive in which they travel: a tar.gz with one JSON file."""

import gzip
import io
import json
import os
import random
import tarfile
import zlib

MEMBER = "settings.json"
PADDING_MEMBER = "tracks.bin"


def factory_settings():
    return {"port1Mode": 0, "port2Mode": 0, "compassOffset": 0.0, "depthOffset": 0.0, "boatName": ""}


def write_archive(settings, path, padding):
    """Writes the archive whole or not at all. The same settings give the same bytes.

    Padding is a number of bytes that cannot be compressed, for archives of some size.
    """
    part = f"{path}.new"
    with gzip.GzipFile(part, "wb", mtime=0) as compressed, tarfile.open(fileobj=compressed, mode="w") as archive:
        _add(archive, MEMBER, json.dumps(settings, indent=2, sort_keys=True).encode())
        if padding:
            _add(archive, PADDING_MEMBER, random.Random(padding).randbytes(padding))
    os.replace(part, path)


def read_archive(path):
    """The settings in an archive; ValueError says what is wrong with it."""
    try:
        with tarfile.open(path, "r:gz") as archive:
            member = archive.extractfile(MEMBER)
            settings = json.load(member) if member else None
    except (OSError, EOFError, KeyError, ValueError, tarfile.TarError, zlib.error) as error:
        raise ValueError(f"not a settings archive: {error}") from error
    if not isinstance(settings, dict) or not all(
        isinstance(settings.get(mode), int) and -128 <= settings[mode] <= 127 for mode in ("port1Mode", "port2Mode")
    ):
        raise ValueError("not a settings archive: no port modes")
    return settings


def _add(archive, name, content):
    member = tarfile.TarInfo(name)
    member.size = len(content)
    archive.addfile(member, io.BytesIO(content))
