// The form for AVX-512. The quad comes first: everything else is written with it.
#include "audio/fft/quad_avx512.h"

#include "audio/fft/complex_transforms.h"
#include "audio/fft/convolving.h"
#include "audio/fft/form.h"
#include "audio/fft/real_passes.h"

const FftForm kAvx512Fft = {Transform<kForward>, Transform<kBackward>, RealPost, RealPre,
                            SpectrumInForm,      ConvolveInForm};
