// The form in ordinary C++. The quad comes first: everything else is written with it.
#include "audio/fft/quad_plain.h"

#include "audio/fft/complex_transforms.h"
#include "audio/fft/convolving.h"
#include "audio/fft/form.h"
#include "audio/fft/real_passes.h"

const FftForm kPlainFft = {Transform<kForward>, Transform<kBackward>, RealPost, RealPre,
                           SpectrumInForm,      ConvolveInForm};
