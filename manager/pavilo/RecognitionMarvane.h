#pragma once

#include <vector>

#include "cmetry/HvMeasureConditions.h"
#include "manager/pavilo/Recognition.h"
#include "manager/pavilo/RecognitionElement.h"

namespace HviManager::PaviloDriver {

// Recognition without any knowledge of the strip: where the colour changes fast from one
// measurement to the next there is an edge, located to a fraction of a measurement as the centre
// of gravity of the differences, and the middle third of each field between two edges is
// averaged. Made anew for each scan.
class RecognitionMarvane : public Recognition {
public:
    RecognitionMarvane();

    Diagnostics::String GetDescription() const override;
    // False on any failure inside, when fewer than two edges leave no field, and when the blurred
    // edges around a narrow field met, which would drop that field without a trace.
    bool Recognize(const Utilities::Vector<DeviceDriver::SpectrumData>& scan,
        Utilities::Vector<DeviceDriver::SpectrumData>& patches) override;
    // Empties the FIFO; false when it runs dry before it is marked finished.
    bool Recognize(
        DeviceDriver::SpectrumDataFifo& scan, Utilities::Vector<DeviceDriver::SpectrumData>& patches) override;

    // Trims the unchanging ends of a series whose differences are known, sets the threshold,
    // marks and bridges the edges and finds their centres. Throws "No patches found" when
    // nothing changes anywhere, and "Margin is not uniform" when a trimmed end drifts in colour,
    // which is fields faded into each other below the noise under a slow hand.
    void LocateEdges(const std::vector<RecognitionElement>& series);
    // The mean of the middle third of each field between neighbouring edges, which are indices
    // into elements. Throws "Field is too small" for a field whose middle third is empty, and
    // "Field is not uniform" for one whose middle third is a single measurement or changes
    // colour, so that a missed edge never gives a patch of a colour that isn't on the strip.
    static Utilities::Vector<DeviceDriver::SpectrumData> AverageFields(
        const std::vector<RecognitionElement>& elements, const std::vector<float>& edges);

    float Threshold() const { return threshold; }
    const std::vector<RecognitionElement>& Elements() const { return elements; }
    const std::vector<float>& Edges() const { return edges; }

private:
    // Each measurement with its plain CIELab differences to both neighbours; the ends count as
    // their own neighbours.
    std::vector<RecognitionElement> ElementsWithDifferences(
        const Utilities::Vector<DeviceDriver::SpectrumData>& scan) const;
    void TrimEnds(const std::vector<RecognitionElement>& series);
    void SetThreshold();
    void Classify();
    void Bridge();
    void FindEdgeCentres();

    CMetry::HvMeasureConditions conditions;
    float threshold;
    std::vector<RecognitionElement> elements;
    std::vector<float> edges;
};

}
