# SPDX-License-Identifier: MIT
"""A source of updates of the program, without the program: `update-probe` told what to do."""

import json
import os
import subprocess
import threading

from .waiting import wait_until


class UpdateProbe:
    """Use as a context manager: on leaving, it ends as it should and without a word of complaint.

    `arguments` are those of update-probe; `environment` is added.
    """

    def __init__(self, *arguments, environment=None):
        self._command = [os.environ["VELLORA_UPDATE_PROBE"], *arguments]
        self._environment = {**os.environ, **(environment or {})}
        self.said = []

    def __enter__(self):
        self._process = subprocess.Popen(self._command, env=self._environment, text=True,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=subprocess.PIPE)
        self._readers = [threading.Thread(target=self._read, daemon=True),
                         threading.Thread(target=self._read_complaints, daemon=True)]
        self._complaints = []
        for reader in self._readers:
            reader.start()
        return self

    def __exit__(self, kind, *_):
        self._process.stdin.close()
        try:
            status = self._process.wait(60)
        finally:
            self._process.kill()
            for reader in self._readers:
                reader.join(60)
            self._process.stdout.close()
            self._process.stderr.close()
        if kind is None:
            assert status == 0 and not self._complaints, "".join(self._complaints)

    def _read(self):
        for line in self._process.stdout:
            self.said.append(json.loads(line))

    def _read_complaints(self):
        for line in self._process.stderr:
            self._complaints.append(line)

    def tell(self, command):
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()

    def wait_for(self, key, seconds=60):
        """The next of what was said that has this key; what was said before it is forgotten."""
        def find():
            for index, each in enumerate(self.said):
                if key in each:
                    del self.said[:index + 1]
                    return each
            return None

        return wait_until(f"{key} of the probe", find, seconds)

    def ask(self, command):
        """What came of it, and the steps on the way to there."""
        self.said.clear()
        self.tell(command)
        wait_until(f"what comes of {command}",
                   lambda: any("result" in each for each in self.said), 60)
        index = next(index for index, each in enumerate(self.said) if "result" in each)
        result, self.steps = self.said[index], self.said[:index]
        del self.said[:index + 1]
        return result
