#include "api/MeasurementDeviceInterface.h"

MeasurementDeviceInterface::~MeasurementDeviceInterface() = default;
