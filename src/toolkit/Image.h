#pragma once

#include <memory>
#include <string_view>

#include "toolkit/Geometry.h"
#include "util/Leaves.h"

namespace corvane::toolkit {

/// A picture, as a leaf among values: a row of a list may hold it beside its texts. Any thread.
class Image : public util::OpaqueObject {
public:
    [[nodiscard]] virtual Size size() const = 0;
};

/// The pictures that come with the application.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    /// Null when there is none of that name.
    [[nodiscard]] virtual std::shared_ptr<const Image> imageNamed(std::string_view name) = 0;
};

} // namespace corvane::toolkit
