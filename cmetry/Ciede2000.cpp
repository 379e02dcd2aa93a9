#include "cmetry/Ciede2000.h"

#include <cmath>

namespace CMetry {

namespace {

constexpr double degrees = 180.0 / M_PI;
constexpr double twentyFiveToTheSeventh = 6103515625.0;

double Seventh(double value)
{
    return std::pow(value, 7.0);
}

// C*ab, h' in degrees within [0, 360), a' and C' after the a* stretch G of one colour.
struct Primed {
    double chroma;
    double hue;
};

Primed PrimeOf(const Ciede2000::Lab& lab, double g)
{
    const double a = (1.0 + g) * lab.a;
    const double chroma = std::hypot(a, lab.b);
    double hue = chroma == 0.0 ? 0.0 : std::atan2(lab.b, a) * degrees;
    if (hue < 0.0) {
        hue += 360.0;
    }
    return {chroma, hue};
}

// The hue difference of two colours, 0 when either is achromatic.
double HueDifference(const Primed& first, const Primed& second)
{
    if (first.chroma * second.chroma == 0.0) {
        return 0.0;
    }
    const double difference = second.hue - first.hue;
    if (difference > 180.0) {
        return difference - 360.0;
    }
    return difference < -180.0 ? difference + 360.0 : difference;
}

// The mean hue, on the shorter arc; the sum when either is achromatic.
double MeanHue(const Primed& first, const Primed& second)
{
    const double sum = first.hue + second.hue;
    if (first.chroma * second.chroma == 0.0) {
        return sum;
    }
    if (std::fabs(first.hue - second.hue) <= 180.0) {
        return sum / 2.0;
    }
    return sum < 360.0 ? (sum + 360.0) / 2.0 : (sum - 360.0) / 2.0;
}

double Cosine(double angleInDegrees)
{
    return std::cos(angleInDegrees / degrees);
}

}

// CIE 142-2001 (ISO/CIE 11664-6), in the steps of Sharma, Wu and Dalal 2005.
double Ciede2000::Difference(const Lab& standard, const Lab& sample, const Factors& factors)
{
    const double meanChroma = (std::hypot(standard.a, standard.b) + std::hypot(sample.a, sample.b)) / 2.0;
    const double g = 0.5 * (1.0 - std::sqrt(Seventh(meanChroma) / (Seventh(meanChroma) + twentyFiveToTheSeventh)));
    const Primed first = PrimeOf(standard, g);
    const Primed second = PrimeOf(sample, g);

    const double deltaL = sample.l - standard.l;
    const double deltaC = second.chroma - first.chroma;
    const double deltaH =
        2.0 * std::sqrt(first.chroma * second.chroma) * std::sin(HueDifference(first, second) / degrees / 2.0);

    const double meanL = (standard.l + sample.l) / 2.0;
    const double meanC = (first.chroma + second.chroma) / 2.0;
    const double meanH = MeanHue(first, second);
    const double t = 1.0 - 0.17 * Cosine(meanH - 30.0) + 0.24 * Cosine(2.0 * meanH) + 0.32 * Cosine(3.0 * meanH + 6.0) -
        0.20 * Cosine(4.0 * meanH - 63.0);
    const double rotation = 30.0 * std::exp(-std::pow((meanH - 275.0) / 25.0, 2.0));
    const double rc = 2.0 * std::sqrt(Seventh(meanC) / (Seventh(meanC) + twentyFiveToTheSeventh));
    const double lightnessOffset = (meanL - 50.0) * (meanL - 50.0);
    const double sl = 1.0 + 0.015 * lightnessOffset / std::sqrt(20.0 + lightnessOffset);
    const double sc = 1.0 + 0.045 * meanC;
    const double sh = 1.0 + 0.015 * meanC * t;
    const double rt = -std::sin(2.0 * rotation / degrees) * rc;

    const double termL = deltaL / (factors.kL * sl);
    const double termC = deltaC / (factors.kC * sc);
    const double termH = deltaH / (factors.kH * sh);
    return std::sqrt(termL * termL + termC * termC + termH * termH + rt * termC * termH);
}

}
