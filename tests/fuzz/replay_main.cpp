// Runs a fuzz target over files and folders of saved inputs, without
// libFuzzer: the regression inputs are replayed by every native test run.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv)
{
    int count = 0;
    auto replay = [&count](const std::filesystem::path &file) {
        std::ifstream in(file, std::ios::binary);
        std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
        ++count;
    };
    for (int i = 1; i < argc; ++i) {
        std::filesystem::path path(argv[i]);
        if (std::filesystem::is_directory(path)) {
            for (const auto &entry : std::filesystem::recursive_directory_iterator(path))
                if (entry.is_regular_file())
                    replay(entry.path());
        } else if (std::filesystem::exists(path)) {
            replay(path);
        }
    }
    std::printf("replayed %d inputs\n", count);
    return 0;
}
