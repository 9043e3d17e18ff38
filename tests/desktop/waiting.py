"""Polling for conditions. No test ever sleeps for a fixed time."""
import time

TIMEOUT = 20.0
INTERVAL = 0.015
LEAST_LOOKS = 4


class NotReached(AssertionError):
    """A condition did not come true in time."""


def wait_for(what, condition, timeout=TIMEOUT):
    """Polls until condition() gives something true and returns that value."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise NotReached(f"not within {timeout:g} s: {what}")
        time.sleep(INTERVAL)


def wait_until_stable(what, sample, hold, timeout=TIMEOUT):
    """Polls until sample() has given the same value for `hold` seconds; returns that value. Two
    looks alone, before and after a pause of the whole machine, tell nothing."""
    state = {"value": sample(), "since": time.monotonic(), "looks": 0}

    def unchanged():
        value, now = sample(), time.monotonic()
        if value != state["value"]:
            state.update(value=value, since=now, looks=0)
        state["looks"] += 1
        return now - state["since"] >= hold and state["looks"] >= LEAST_LOOKS

    wait_for(what, unchanged, timeout)
    return state["value"]
