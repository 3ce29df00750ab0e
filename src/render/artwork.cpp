// Loading and locking in one step.
#include "render/artwork.h"

#include "render/packed_image.h"

namespace veldran {

Artwork::Artwork(int resource) : block_(loadPackedImage(resource)), image_(block_.get()) {}

} // namespace veldran
