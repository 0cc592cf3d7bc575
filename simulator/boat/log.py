"""One line for each thing that happened: seconds since the start, who, what, and values as key=value."""

import json
import sys
import time


class Log:
    def __init__(self, stream=sys.stdout):
        self._stream = stream
        self._start = time.monotonic()

    def __call__(self, who, event, **values):
        words = [f"{time.monotonic() - self._start:.3f}", who, event]
        words += [f"{key}={_word(value)}" for key, value in values.items()]
        print(" ".join(words), file=self._stream, flush=True)


def _word(value):
    """A value with blanks or quotes in it is written as a JSON string, so that a line splits at its blanks."""
    text = str(value)
    return text if text.isprintable() and not set(text) & set(' "') else json.dumps(text).replace(" ", r"\u0020")
