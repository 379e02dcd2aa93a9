#pragma once

namespace CMetry {

// The CIEDE2000 colour difference of two CIELab colours, the first the standard, with the
// parametric factors kL, kC, kH (all 1 under reference conditions).
class Ciede2000 {
public:
    struct Lab {
        double l;
        double a;
        double b;
    };
    struct Factors {
        double kL;
        double kC;
        double kH;
    };

    static double Difference(const Lab& standard, const Lab& sample, const Factors& factors);
};

}
