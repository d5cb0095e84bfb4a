// How values go from vertices to pixels: on a plane nothing has to be corrected for perspective,
// and what all corners of a shape agree on is not interpolated at all. Drawing in software, that
// saves a fifth of the time for pixels. The oldest interfaces know neither.
#if defined(QSHADER_GLSL) && QSHADER_GLSL_VERSION < 130
#define LINEAR
#define CONSTANT
#else
#define LINEAR noperspective
#define CONSTANT flat
#endif
