#pragma once

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "fakes/FakeControls.h"
#include "toolkit/LayoutConstraint.h"
#include "views/VisualFormat.h"

namespace corvane::fakes {

class FakeConstraint final : public toolkit::LayoutConstraint {
public:
    FakeConstraint(const toolkit::View* item, toolkit::LayoutAttribute attribute, double constant)
        : item_(item), attribute_(attribute), constant_(constant) {}
    [[nodiscard]] const toolkit::View* firstItem() const override { return item_; }
    [[nodiscard]] toolkit::LayoutAttribute firstAttribute() const override { return attribute_; }
    [[nodiscard]] double constant() const override { return constant_; }
    void setConstant(double constant) override { set(constant, "set "); }
    [[nodiscard]] Animator& animator() override { return animator_; }

    /// "set 0", "animate 120.6": in order.
    std::vector<std::string> changes;

private:
    struct Animation final : Animator {
        explicit Animation(FakeConstraint& constraint) : owner(constraint) {}
        void setConstant(double constant) override { owner.set(constant, "animate "); }
        FakeConstraint& owner;
    };
    void set(double constant, const std::string& how) {
        constant_ = constant;
        std::ostringstream text;
        text << how << constant;
        changes.push_back(text.str());
    }
    const toolkit::View* item_;
    toolkit::LayoutAttribute attribute_;
    double constant_;
    Animation animator_{*this};
};

class FakeConstrainedView final : public FakeViewOf<toolkit::ConstrainedView> {
public:
    using FakeViewOf::FakeViewOf;
    [[nodiscard]] std::vector<Constraint> constraints() const override { return held_; }
    void addConstraint(Constraint constraint) override {
        held_.push_back(std::move(constraint));
        note("addConstraint");
    }
    void removeConstraint(const toolkit::LayoutConstraint& constraint) override {
        if (std::erase_if(held_, [&](const auto& held) { return held.get() == &constraint; }) > 0)
            note("removeConstraint");
    }
    [[nodiscard]] std::vector<Constraint>
    constraintsWithVisualFormat(std::string_view format,
                                const std::map<std::string, toolkit::View*>& views) override {
        note(std::string(format));
        const auto parsed = views::VisualFormat::fromText(format);
        const auto view = views.find(parsed.viewName);
        if (view == views.end()) throw std::invalid_argument("no view named " + parsed.viewName);
        return {std::make_shared<FakeConstraint>(view->second, parsed.attribute, parsed.constant)};
    }

private:
    std::vector<Constraint> held_;
};

} // namespace corvane::fakes
