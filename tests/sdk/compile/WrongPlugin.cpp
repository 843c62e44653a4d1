#include "sdk/PluginWrapper.h"

// One mistake at a time, chosen by the build; without any the class is in order.

class Connector {
public:
    virtual ~Connector() = default;
#if defined(CASE_ARGUMENT)
    bool isDirty(int /*unexpected*/) { return true; }
#elif defined(CASE_RESULT)
    int isDirty() { return 1; }
#elif defined(CASE_OVERLOADED)
    bool isDirty(int /*unexpected*/) { return true; }
    bool isDirty(char /*unexpected*/) { return true; }
#elif defined(CASE_TEMPLATE)
    template <typename T>
    bool isDirty(T /*unexpected*/) {
        return true;
    }
#elif defined(CASE_FIELD)
    bool isDirty = true;
#elif defined(CASE_MISSPELT)
    void configureButtonPressed(void* /*sender*/) {}
#elif defined(CASE_MISSPELT_OVERLOADED)
    bool saveChange() { return true; }
    bool saveChange(int /*how*/) { return true; }
#elif defined(CASE_HOST)
    void setPluginAPIImplementor(CorvaneHost* /*notConstant*/) {}
#elif !defined(CASE_PRIVATE)
    bool isDirty() { return true; }
#endif
    bool saveChanges() { return true; }

private:
#if defined(CASE_PRIVATE)
    bool isDirty() { return true; }
#endif
};

class SealedConnector final {
public:
#if defined(CASE_FINAL)
    int isDirty() { return 1; }
#else
    bool isDirty() { return true; }
#endif
};

const CorvanePlugin* tables[] = {corvane::sdk::tableFor<Connector>(),
                                 corvane::sdk::tableFor<SealedConnector>()};
