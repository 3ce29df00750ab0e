// Loading and locking in one step.
#include "render/windows/artwork.h"

#include "render/windows/packed_image.h"

namespace veldran {

Artwork::Artwork(int resource) : Artwork(loadPackedImage(resource)) {}

Artwork::Artwork(GlobalBlock picture) : block_(std::move(picture)), image_(block_.get()) {}

} // namespace veldran
