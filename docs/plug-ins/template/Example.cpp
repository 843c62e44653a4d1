#include <corvane/Form.h>
#include <corvane/PluginWrapper.h>

using namespace corvane::sdk;

/// Configures the connector "Example". Every method is optional; see the guide for all of them.
class Example {
public:
    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = Host(host); }

    bool canConfigure() { return true; }
    void configureButtonClicked(void* /*sender*/) {
        if (form_.isOpen()) return form_.raise();
        FormWindow window("example", "Example");
        window.add(FormItem::text("server", "&Server:").value(edited_.server).required("Name the server."));
        window.add(FormItem::number("port", "&Port:", 1, 65535).value(edited_.port).required());
        window.add(FormItem::text("realm", "&Realm:")
                       .value(edited_.realm)
                       .characters("ABCDEFGHIJKLMNOPQRSTUVWXYZ."));
        window.button(FormButton::ok([this] { accept(); })).button(FormButton::cancel());
        form_ = Form(host_, window);
    }

    bool isDirty() { return edited_ != saved_; }
    bool saveChanges() { // a real plug-in writes them here
        host_.log("saved " + edited_.server);
        saved_ = edited_;
        return true;
    }
    bool revertChanges() {
        edited_ = saved_;
        return true;
    }

private:
    struct Settings {
        std::string server;
        int port = 88;
        std::string realm;
        bool operator==(const Settings&) const = default;
    };
    void accept() {
        if (form_.text("server") == "localhost") return form_.complain("server", "Name another machine.");
        edited_ = {form_.text("server"), static_cast<int>(*form_.number("port")), form_.text("realm")};
        if (isDirty()) host_.markDirty();
    }

    Host host_;
    Settings edited_, saved_;
    Form form_;
};
CORVANE_PLUGIN(Example)
