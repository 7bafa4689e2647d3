// The form for AVX2 with fused multiply and add. The quad comes first: everything else is written with it.
#include "audio/fft/quad_avx2.h"

#include "audio/fft/complex_transforms.h"
#include "audio/fft/convolving.h"
#include "audio/fft/form.h"
#include "audio/fft/real_passes.h"

const FftForm kAvx2Fft = {Transform<kForward>, Transform<kBackward>, RealPost, RealPre,
                          SpectrumInForm,      ConvolveInForm};
