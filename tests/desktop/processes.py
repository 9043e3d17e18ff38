"""Child processes whose output is kept, and which never outlive the test."""
import shutil
import signal
import subprocess
import threading

# Ends the child should this process die without a word, and gives it the usual answer to a hang-up
# also where the tests themselves run under nohup.
GUARD = ["env", "--default-signal=HUP", "setpriv", "--pdeathsig", "KILL"]


class MissingCommand(Exception):
    """A command that the tests need is not installed."""


def guarded(argv):
    if not shutil.which(argv[0]):
        raise MissingCommand(f"{argv[0]} is not installed: scripts/install-packages test")
    return [*GUARD, *argv]


def end(process, grace=8.0):
    """Asks the process to end, insists after `grace` seconds, and returns its status."""
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(grace)
        except subprocess.TimeoutExpired:
            process.kill()
    return process.wait()


class LoggedProcess:
    """Runs a command and collects the lines that it prints."""
    stdin = subprocess.DEVNULL

    def __init__(self, argv, env):
        self.lines = []
        self.process = subprocess.Popen(guarded(argv), env=env, stdin=self.stdin,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.decode("utf-8", "replace").rstrip("\n"))

    def count(self, line):
        """How often that very line was printed."""
        return self.lines.count(line)

    def running(self):
        return self.process.poll() is None

    def finish(self):
        """Ends the process; all its lines are in `lines` afterwards. Returns its status."""
        status = end(self.process)
        self._reader.join(5)
        self.process.stdout.close()
        return status
