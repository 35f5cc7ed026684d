// The bundled sample: a small ship with a hierarchy of parts, points, a battery and keys.
#pragma once

#include "model/model_data.h"

namespace mw {

ModelData BuildSampleModel();

}  // namespace mw
