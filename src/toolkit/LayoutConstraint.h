#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/View.h"

namespace corvane::toolkit {

enum class LayoutAttribute { width, height, other };

/// One condition of a layout: an attribute of an item is a constant (points). Main thread.
class LayoutConstraint {
public:
    virtual ~LayoutConstraint() = default;
    /// Null when the item is gone.
    [[nodiscard]] virtual const View* firstItem() const = 0;
    [[nodiscard]] virtual LayoutAttribute firstAttribute() const = 0;
    /// During an animation, the constant that it leads to.
    [[nodiscard]] virtual double constant() const = 0;
    /// At once; ends an animation that is going on.
    virtual void setConstant(double constant) = 0;

    /// Stands for the constraint and changes it with animation.
    class Animator {
    public:
        virtual ~Animator() = default;
        virtual void setConstant(double constant) = 0;
    };
    /// Lives as long as the constraint.
    [[nodiscard]] virtual Animator& animator() = 0;
};

/// A view with a list of constraints of its own.
class ConstrainedView : public View {
public:
    using Constraint = std::shared_ptr<LayoutConstraint>;

    /// In the order in which they were added.
    [[nodiscard]] virtual std::vector<Constraint> constraints() const = 0;
    virtual void addConstraint(Constraint constraint) = 0;
    /// Nothing happens when the view doesn't hold it.
    virtual void removeConstraint(const LayoutConstraint& constraint) = 0;
    /// Constraints as a visual format says them: "V:[name(==12)]" is the height of the view that `views` has
    /// under that name, "H:[name(==12)]" its width. They belong to no view yet. Throws
    /// `std::invalid_argument` on a format or a name that can't be understood.
    [[nodiscard]] virtual std::vector<Constraint>
    constraintsWithVisualFormat(std::string_view format, const std::map<std::string, View*>& views) = 0;
};

} // namespace corvane::toolkit
