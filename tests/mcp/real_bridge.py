"""`velmora-headless` over a private tmux server, in a folder of its own."""

import os
import shutil
import subprocess

from helper_process import PATIENCE_SECONDS, PROGRAMS, scrubbed_environment


class RealBridge:
    def __init__(self, folder):
        self._folder = folder
        self._environment = scrubbed_environment(
            folder, SHELL="/bin/bash", PATH=os.environ["PATH"], LANG="C.UTF-8", XDG_RUNTIME_DIR=str(folder),
            XDG_DATA_HOME=str(folder / "data"), XDG_CONFIG_HOME=str(folder / "config"), TMUX_TMPDIR=str(folder))
        self.tmux("-f", "/dev/null", "new-session", "-d", "-x", "100", "-y", "30")
        self._process = subprocess.Popen([PROGRAMS / "velmora-headless"], env=self._environment,
                                         stdout=subprocess.PIPE, text=True)
        self.socket = self._process.stdout.readline().strip()
        if not self.socket:
            raise RuntimeError("velmora-headless did not start")

    def close(self):
        self._process.terminate()
        self._process.wait(PATIENCE_SECONDS)
        self._process.stdout.close()
        self.tmux("kill-server")

    def tmux(self, *arguments):
        socket = self._folder / f"tmux-{os.getuid()}" / "default"
        socket.parent.mkdir(mode=0o700, exist_ok=True)
        subprocess.run([shutil.which("tmux"), "-S", str(socket), *arguments], env=self._environment, check=True)
