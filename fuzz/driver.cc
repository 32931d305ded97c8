// Drives a fuzz entry without libFuzzer: every file of the corpus folder named on the command line, then
// seeded random inputs and mutations of the corpus. The same seed gives the same inputs, so a failure repeats.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

Input readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Input randomInput(std::mt19937& random) {
    Input input(random() % 512);
    for (auto& byte : input) byte = static_cast<std::uint8_t>(random());
    return input;
}

Input mutated(Input input, std::mt19937& random) {
    for (unsigned change = 1 + random() % 8; change > 0 && !input.empty(); --change) {
        const std::size_t at = random() % input.size();
        switch (random() % 4) {
            case 0: input[at] = static_cast<std::uint8_t>(random()); break;
            case 1: input.erase(input.begin() + static_cast<std::ptrdiff_t>(at)); break;
            case 2:
                input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::uint8_t>(random()));
                break;
            default: input[at] = static_cast<std::uint8_t>(input[at] ^ (1U << (random() % 8))); break;
        }
    }
    return input;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<Input> corpus;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) continue;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) corpus.push_back(readFile(entry.path()));
    }
    for (const auto& input : corpus) LLVMFuzzerTestOneInput(input.data(), input.size());

    const char* rounds = std::getenv("FUZZ_ROUNDS");
    const int count = rounds != nullptr ? std::atoi(rounds) : 20000;
    std::mt19937 random(4711);
    for (int i = 0; i < count; ++i) {
        const Input input = corpus.empty() || random() % 2 == 0 ? randomInput(random)
                                                                : mutated(corpus[random() % corpus.size()], random);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu corpus inputs and %d generated ones passed\n", corpus.size(), count);
    return 0;
}
