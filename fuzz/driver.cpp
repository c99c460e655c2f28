// Runs a fuzz target without libFuzzer, with the same command line: first every file of the given folders, then -runs=N
// mutations of them from -seed=S. The same seed gives the same run. The failing input is saved as ./crash-input.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t maxInput = 4096;
Bytes current;

void SaveCurrent() {
    if (std::FILE* file = std::fopen("crash-input", "wb")) {
        std::fwrite(current.data(), 1, current.size(), file);
        std::fclose(file);
    }
    std::fprintf(stderr, "the input of %zu bytes that failed is in ./crash-input\n", current.size());
}

void OnAbort(int) {
    SaveCurrent();
    std::signal(SIGABRT, SIG_DFL);
    std::raise(SIGABRT);
}

void Run(Bytes input) {
    current = std::move(input);
    // A copy of exactly the input's size, so that reading past its end is detected.
    const Bytes exact(current.begin(), current.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

class Mutator {
  public:
    Mutator(std::vector<Bytes> corpus, std::uint64_t seed) : corpus_(std::move(corpus)), random_(seed) {}

    Bytes Next() {
        Bytes input = corpus_[Below(corpus_.size())];
        for (std::size_t steps = 1 + Below(6); steps > 0; --steps) Change(input);
        if (input.size() > maxInput) input.resize(maxInput);
        return input;
    }

  private:
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

    // One that often means something, or any.
    std::uint8_t Character() {
        static constexpr std::array<std::uint8_t, 12> telling = {0,   1,   0x7F, 0x80, 0xFF, '-',
                                                                 '.', ' ', '0',  '9',  ';',  '\n'};
        return Below(2) == 0 ? telling[Below(telling.size())] : static_cast<std::uint8_t>(random_());
    }

    void Change(Bytes& input) {
        const std::size_t at = Below(input.size() + 1);
        const auto place = input.begin() + static_cast<std::ptrdiff_t>(at);
        switch (Below(6)) {
            case 0:
                if (place != input.end()) *place ^= static_cast<std::uint8_t>(1U << Below(8));
                break;
            case 1:
                if (place != input.end()) *place = Character();
                break;
            case 2:
                input.insert(place, 1 + Below(40) * Below(2), Character());
                break;
            case 3:
                input.erase(place, place + static_cast<std::ptrdiff_t>(
                                               Below(std::min<std::size_t>(input.size() - at, 16) + 1)));
                break;
            case 4: {  // repeat a piece of the input
                const Bytes piece(place, place + static_cast<std::ptrdiff_t>(Below(input.size() - at + 1)));
                input.insert(input.begin() + static_cast<std::ptrdiff_t>(Below(input.size() + 1)), piece.begin(),
                             piece.end());
                break;
            }
            default: {  // continue as another input does
                const Bytes& other = corpus_[Below(corpus_.size())];
                input.erase(place, input.end());
                input.insert(input.end(), other.begin() + static_cast<std::ptrdiff_t>(Below(other.size() + 1)),
                             other.end());
                break;
            }
        }
        if (input.size() > maxInput) input.resize(maxInput);
    }

    std::vector<Bytes> corpus_;
    std::mt19937_64 random_;
};

// Reads the files in the order of their names, so that a run does not depend on the file system.
std::vector<Bytes> ReadCorpus(const std::vector<std::string>& paths) {
    std::vector<std::filesystem::path> files;
    for (const std::string& path : paths) {
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::directory_iterator(path))
                if (entry.is_regular_file()) files.push_back(entry.path());
        } else {
            files.emplace_back(path);
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<Bytes> corpus;
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return corpus;
}

int Main(int argc, char** argv) {
    std::uint64_t runs = 0;
    std::uint64_t seed = 1;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("-runs=")) {
            runs = std::stoull(std::string(argument.substr(6)));
        } else if (argument.starts_with("-seed=")) {
            seed = std::stoull(std::string(argument.substr(6)));
        } else if (argument.starts_with("-")) {
            std::fprintf(stderr, "unknown option %s\n", argv[i]);
            return 2;
        } else {
            paths.emplace_back(argument);
        }
    }
    std::signal(SIGABRT, OnAbort);
    if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(SaveCurrent);
    std::vector<Bytes> corpus = ReadCorpus(paths);
    if (corpus.empty() && !paths.empty()) {
        std::fprintf(stderr, "no corpus found\n");
        return 2;
    }
    corpus.emplace_back();  // the empty input belongs to every corpus
    for (const Bytes& input : corpus) Run(input);
    const std::size_t stored = corpus.size();
    Mutator mutator(std::move(corpus), seed);
    for (std::uint64_t i = 0; i < runs; ++i) Run(mutator.Next());
    std::printf("%zu stored inputs, %llu mutations, seed %llu: nothing found\n", stored,
                static_cast<unsigned long long>(runs), static_cast<unsigned long long>(seed));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "uncaught: %s\n", error.what());
        SaveCurrent();
        return 1;
    }
}
