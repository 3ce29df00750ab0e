// The looks are chosen by an activation context made from a manifest among the module's resources. The manifest has an
// identity of its own, which the loader does not know, so the choice stays with these scopes.
#include "base/windows/visual_styles.h"

#include "base/windows/module.h"
#include "resources/resource_ids.h"

namespace veldran {
namespace {

HANDLE createContext() {
    ACTCTXA request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpResourceName = MAKEINTRESOURCEA(VISUAL_STYLES_MANIFEST);
    request.hModule = moduleInstance();
    return CreateActCtxA(&request);
}

} // namespace

VisualStyles::VisualStyles() : context_(createContext()) {
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_) != FALSE;
}

VisualStyles::~VisualStyles() {
    if (active_)
        DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE)
        ReleaseActCtx(context_);
}

HostLooks::HostLooks() : active_(ActivateActCtx(nullptr, &cookie_) != FALSE) {}

HostLooks::~HostLooks() {
    if (active_)
        DeactivateActCtx(0, cookie_);
}

} // namespace veldran
