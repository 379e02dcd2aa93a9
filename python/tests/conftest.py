"""One virtual instrument for the whole session, in a directory of its own; the module's locks
go to a directory of their own as well. ORBEL_LIBRARY and ORBEL_SIM name a build tree's module
and orbel-sim, as make test passes them."""
import os
import tempfile

import pytest

import orbel


@pytest.fixture(scope="session")
def sim():
    os.environ.setdefault("ORBEL_LOCK_DIR", tempfile.mkdtemp(prefix="orbel-python-locks-"))
    with orbel.sim.start() as running:
        yield running


@pytest.fixture
def instrument(sim):
    with orbel.Instrument() as instrument:
        yield instrument
