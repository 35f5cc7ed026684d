// Build tool: embed_scrambled IN OUT NAME writes a C++ source holding IN's bytes scrambled,
// as `const unsigned char NAME[]` and `const unsigned long NAMESize`.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "app/scramble.h"

int main(int argc, char** argv) {
    constexpr const char* kUsage =
        "Usage: mw_embed_scrambled IN OUT NAME\n"
        "Writes the bytes of IN, scrambled, as the C++ array NAME into the source file OUT.\n";
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (argc != 4 || argv[1][0] == '-' || argv[2][0] == '-') {
        std::fputs(kUsage, stderr);
        return 64;
    }
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "embed_scrambled: cannot read %s\n", argv[1]);
        return 66;
    }
    const std::vector<std::uint8_t> plain((std::istreambuf_iterator<char>(in)),
                                          std::istreambuf_iterator<char>());
    const std::vector<std::uint8_t> scrambled = mw::ScrambleBytes(plain);
    std::ofstream out(argv[2]);
    const std::string name = argv[3];
    out << "// Made at build time from " << argv[1] << ", scrambled.\nnamespace mw {\n"
        << "extern const unsigned char " << name << "[];\nextern const unsigned long " << name
        << "Size;\nconst unsigned char " << name << "[] = {";
    for (std::size_t i = 0; i < scrambled.size(); ++i)
        out << (i % 20 == 0 ? "\n" : "") << static_cast<unsigned>(scrambled[i]) << ",";
    out << "\n};\nconst unsigned long " << name << "Size = " << scrambled.size()
        << ";\n}  // namespace mw\n";
    return out ? 0 : 73;
}
