import pytest

import orbel

GREY, WHITE = [0.5] * 36, [0.9] * 36
# CIE lightness of the two flat spectra, Y = 50 and Y = 90: L* = 116 Y^(1/3) - 16.
L_GREY, L_WHITE = 116 * 0.5 ** (1 / 3) - 16, 116 * 0.9 ** (1 / 3) - 16
# CMC's lightness weight of the standard (Clarke, McDonald and Rigg 1984), at the ratio 2:1.
CMC_SL = 0.040975 * L_WHITE / (1 + 0.01765 * L_WHITE)


@pytest.mark.parametrize("mode, target", [("ambient", "light:daylight"), ("emission", "display:white")])
def test_a_light_carries_its_colour_temperature_rendering_and_y(sim, instrument, mode, target):
    sim.place("black")
    instrument.calibrate(mode)
    sim.place(target)
    sample = getattr(instrument, mode)()
    light = sample.light
    assert 1000 < light.cct < 100000 and abs(light.duv) < 0.05
    assert sorted(light.r) == list(range(1, 15))
    assert light.ra == pytest.approx(sum(light.r[i] for i in range(1, 9)) / 8, abs=0.1)
    assert light.illuminance == pytest.approx(instrument.colour(colour_space="CIEXYZ", illumination="Emission")[1],
                                              rel=1e-3)


def test_delta_e_by_the_formula_named_one_run_for_all_samples():
    differences = orbel.colour.delta_e([WHITE, GREY], WHITE, formula="CIE76")
    assert differences == pytest.approx([0.0, L_WHITE - L_GREY], abs=2e-4)
    assert orbel.colour.delta_e([GREY], WHITE, formula="CMC") == pytest.approx([(L_WHITE - L_GREY) / (2 * CMC_SL)],
                                                                               abs=2e-4)
    assert orbel.colour.delta_e([GREY], WHITE)[0] < L_WHITE - L_GREY


def test_a_black_has_no_colour_temperature():
    light = orbel.colour.emission_metrics([[0.0] * 36])[0]
    assert (light.cct, light.r, light.illuminance) == (None, {}, 0.0)


def test_what_the_program_refuses_or_a_missing_program_raises_a_clear_error(monkeypatch):
    with pytest.raises(orbel.colour.ProgramError, match="--delta-e doesn't know 'DIN99'"):
        orbel.colour.delta_e([GREY], WHITE, formula="DIN99")
    with pytest.raises(orbel.colour.ProgramError, match="a spectrum of 31 values"):
        orbel.colour.emission_metrics([[1.0] * 31])
    monkeypatch.setenv("ORBEL_PROGRAM", "/nonexistent/orbel")
    with pytest.raises(FileNotFoundError, match="ORBEL_PROGRAM"):
        orbel.colour.emission_metrics([WHITE])
