#include "oracle/Judge.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>
using namespace corvane::oracle;
int main(int c, char** v) {
    try {
        auto p = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
        std::filesystem::create_directories("/tmp/o/verdicts");
        Judge j(p, "/tmp/o/verdicts", c > 2 ? atoi(v[2]) : 0);
        auto f = filesBelow(v[1]);
        std::printf("%s%s", c > 2 ? "" : text(j.names(f)).c_str(), text(j.sssd(f)).c_str());
    } catch (std::exception& e) {
        std::printf("failed: %s\n", e.what());
        return 1;
    }
}
