// List-file codecs: Huffman encode/decode beside zlib (deflate level 1 and inflate) on the
// same natural-language-like text, and a full list's save + load. Figures only; nothing
// here asserts a time.
//
// Hidden mode, for scripts/measure-listfiles:
//   marquill_bench --decode-driver   decodes a fixed set of slices once (callgrind)
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>

#include <sys/resource.h>

#include "listfiles/FileOperations.h"
#include "listfiles/clsHuffman.h"
#include "platform/StdFileSystem.h"

namespace {

using namespace mq;

// ---- Text that reads like English prose ------------------------------------------------

constexpr const char* kWords[] = {
    "the", "of", "and", "to", "a", "in", "is", "it", "you", "that", "he", "was", "for", "on",
    "are", "with", "as", "I", "his", "they", "be", "at", "one", "have", "this", "from", "or",
    "had", "by", "word", "but", "what", "some", "we", "can", "out", "other", "were", "all",
    "there", "when", "up", "use", "your", "how", "said", "an", "each", "she", "which", "do",
    "their", "time", "if", "will", "way", "about", "many", "then", "them", "write", "would",
    "like", "so", "these", "her", "long", "make", "thing", "see", "him", "two", "has", "look",
    "more", "day", "could", "go", "come", "did", "number", "sound", "no", "most", "people",
    "my", "over", "know", "water", "than", "call", "first", "who", "may", "down", "side",
    "been", "now", "find", "any", "new", "work", "part", "take", "get", "place", "made",
    "live", "where", "after", "back", "little", "only", "round", "man", "year", "came",
    "show", "every", "good", "me", "give", "our", "under", "name", "very", "through", "just",
    "form", "sentence", "great", "think", "say", "help", "low", "line", "differ", "turn",
    "cause", "much", "mean", "before", "move", "right", "boy", "old", "too", "same", "tell",
    "does", "set", "three", "want", "air", "well", "also", "play", "small", "end", "put",
    "home", "read", "hand", "port", "large", "spell", "add", "even", "land", "here", "must",
    "big", "high", "such", "follow", "act", "why", "ask", "men", "change", "went", "light",
    "kind", "off", "need", "house", "picture", "try", "us", "again", "animal", "point",
    "mother", "world", "near", "build", "self", "earth", "father", "head", "stand", "own",
    "page", "should", "country", "found", "answer", "school", "grow", "study", "still",
    "learn", "plant", "cover", "food", "sun", "four", "between", "state", "keep", "eye",
    "never", "last", "let", "thought", "city", "tree", "cross", "farm", "hard", "start",
    "might", "story", "saw", "far", "sea", "draw", "left", "late", "run", "while", "press",
    "close", "night", "real", "life", "few", "north", "clipboard", "Marquill", "window",
    "October", "London", "quietly", "jumped", "yesterday", "because", "although", "journey"};
constexpr size_t kWordCount = sizeof kWords / sizeof kWords[0];

// Several documents, each with its own word ranking and Zipf exponent, so that slices of
// different documents have different statistics.
std::string MakeDocument(uint64_t seed, size_t size) {
  std::mt19937_64 rng(seed);
  std::vector<size_t> order(kWordCount);
  for (size_t k = 0; k < kWordCount; ++k) order[k] = k;
  // Keep the commonest words near the top but shuffle within bands.
  for (size_t band = 0; band < kWordCount; band += 20)
    std::shuffle(order.begin() + long(band),
                 order.begin() + long(std::min(kWordCount, band + 20)), rng);
  const double exponent = 0.9 + 0.1 * double(seed % 5);
  std::vector<double> weights(kWordCount);
  for (size_t k = 0; k < kWordCount; ++k) weights[k] = 1.0 / std::pow(double(k + 1), exponent);
  std::discrete_distribution<size_t> pick(weights.begin(), weights.end());
  std::uniform_int_distribution<int> sentenceLength(4, 24), percent(0, 99);
  std::string out;
  out.reserve(size + 256);
  while (out.size() < size) {
    const int words = sentenceLength(rng);
    for (int w = 0; w < words; ++w) {
      std::string word = kWords[order[pick(rng)]];
      if (w == 0) word[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[0])));
      if (percent(rng) < 2) word = std::to_string(rng() % 2000);
      out += word;
      if (w + 1 < words) out += percent(rng) < 8 ? ", " : " ";
    }
    const int end = percent(rng);
    out += end < 85 ? ". " : end < 93 ? "? " : "! ";
    if (percent(rng) < 12) out += "\r\n\r\n";
    if (percent(rng) < 3) out += "\"Quoted speech,\" she said; (and an aside). ";
  }
  out.resize(size);
  return out;
}

struct Corpus {
  std::vector<std::string> slices;
  size_t bytes = 0;
};

// Many slices of different lengths from different documents and offsets.
const Corpus& Slices() {
  static const Corpus corpus = [] {
    Corpus c;
    std::vector<std::string> docs;
    for (uint64_t d = 0; d < 6; ++d) docs.push_back(MakeDocument(1000 + d, 2 << 20));
    std::mt19937_64 rng(42);
    for (int k = 0; k < 300; ++k) {
      const std::string& doc = docs[rng() % docs.size()];
      const size_t length = 4096 + rng() % (60 * 1024);
      const size_t offset = rng() % (doc.size() - length);
      c.slices.push_back(doc.substr(offset, length));
      c.bytes += length;
    }
    return c;
  }();
  return corpus;
}

const std::vector<Bytes>& Encoded() {
  static const std::vector<Bytes> encoded = [] {
    std::vector<Bytes> out;
    for (const auto& s : Slices().slices) out.push_back(clsHuffman::Encode(s));
    return out;
  }();
  return encoded;
}

// ---- Huffman against zlib --------------------------------------------------------------

void BM_HuffmanEncode(benchmark::State& state) {
  const Corpus& c = Slices();
  size_t out = 0;
  for (auto _ : state)
    for (const auto& s : c.slices) {
      Bytes e = clsHuffman::Encode(s);
      out += e.size();
      benchmark::DoNotOptimize(e.data());
    }
  state.SetBytesProcessed(int64_t(state.iterations() * c.bytes));
  state.counters["ratio"] = double(out) / double(state.iterations() * c.bytes);
}

void BM_HuffmanDecode(benchmark::State& state) {
  const Corpus& c = Slices();
  const auto& encoded = Encoded();
  Bytes out;
  for (auto _ : state)
    for (const auto& e : encoded) {
      if (!clsHuffman::Decode(e, out)) state.SkipWithError("decode failed");
      benchmark::DoNotOptimize(out.data());
    }
  state.SetBytesProcessed(int64_t(state.iterations() * c.bytes));
}

void BM_ZlibDeflateLevel1(benchmark::State& state) {
  const Corpus& c = Slices();
  z_stream z{};
  deflateInit(&z, 1);
  std::vector<unsigned char> out(deflateBound(&z, 128 * 1024));
  size_t total = 0;
  for (auto _ : state)
    for (const auto& s : c.slices) {
      deflateReset(&z);
      z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(s.data()));
      z.avail_in = uInt(s.size());
      z.next_out = out.data();
      z.avail_out = uInt(out.size());
      if (deflate(&z, Z_FINISH) != Z_STREAM_END) state.SkipWithError("deflate failed");
      total += z.total_out;
    }
  deflateEnd(&z);
  state.SetBytesProcessed(int64_t(state.iterations() * c.bytes));
  state.counters["ratio"] = double(total) / double(state.iterations() * c.bytes);
}

void BM_ZlibInflate(benchmark::State& state) {
  const Corpus& c = Slices();
  std::vector<std::vector<unsigned char>> packed;
  for (const auto& s : c.slices) {
    uLongf size = compressBound(uLong(s.size()));
    std::vector<unsigned char> p(size);
    compress2(p.data(), &size, reinterpret_cast<const Bytef*>(s.data()), uLong(s.size()), 1);
    p.resize(size);
    packed.push_back(std::move(p));
  }
  z_stream z{};
  inflateInit(&z);
  std::vector<unsigned char> out(128 * 1024);
  for (auto _ : state)
    for (const auto& p : packed) {
      inflateReset(&z);
      z.next_in = const_cast<Bytef*>(p.data());
      z.avail_in = uInt(p.size());
      z.next_out = out.data();
      z.avail_out = uInt(out.size());
      if (inflate(&z, Z_FINISH) != Z_STREAM_END) state.SkipWithError("inflate failed");
      benchmark::DoNotOptimize(out.data());
    }
  inflateEnd(&z);
  state.SetBytesProcessed(int64_t(state.iterations() * c.bytes));
}

// ---- Lists saved and loaded -----------------------------------------------------------

class PlainOnlyRichText final : public RichTextBox {
 public:
  bool LoadRtf(std::string_view) override { return false; }
  Text PlainText() override { return Text(); }
  void SetPlainText(TextView) override {}
  Bytes Rtf() override { return Bytes(); }
  void Clear() override {}
};

// A list of `count` plain entries of `kb` KB of prose each, on disk as a list file.
struct ListBench {
  ListModel rows;
  ClipStore store{rows};
  PlainOnlyRichText rtb;
  Windows1252 cp;
  StdFileSystem files;
  ListContext context{store, rtb, cp, files};
  bool isProtected;
  Text path;

  ListBench(int count, size_t kb, bool protect) : isProtected(protect) {
    const std::string doc = MakeDocument(7, size_t(count) * kb * 1024);
    for (int k = 0; k < count; ++k) {
      Text text = Widen(std::string_view(doc).substr(size_t(k) * kb * 1024, kb * 1024));
      store.Append(ClipEntry::Plain(text), text);
    }
    path = (std::filesystem::temp_directory_path() /
            ("mq-bench-" + std::to_string(count) + "x" + std::to_string(kb) +
             (protect ? ".mqp" : ".mql")))
               .u16string();
  }
  ~ListBench() { files.Delete(path); }
  bool Save() { return FileOperations::SaveListFile(context, path, isProtected, u"password").ok; }
  // Opening as new replaces the list with what it was, so every round starts alike.
  bool Load() {
    return FileOperations::LoadListFile(context, path, FileOperations::LoadMode::OpenAsNew,
                                        isProtected, u"password")
        .Loaded();
  }
};

long MinorFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

// Arguments: entries, KB per entry, protected, what (0 save + load, 1 save, 2 load).
void BM_List(benchmark::State& state) {
  ListBench list(int(state.range(0)), size_t(state.range(1)), state.range(2) != 0);
  const int what = int(state.range(3));
  if (what == 2 && !list.Save()) state.SkipWithError("save failed");
  const long faultsBefore = MinorFaults();
  for (auto _ : state) {
    if (what != 2 && !list.Save()) state.SkipWithError("save failed");
    if (what != 1 && !list.Load()) state.SkipWithError("load failed");
  }
  // Fresh pages the allocator got from the system: on a busy virtual machine each costs
  // microseconds, and they make much of the time here.
  state.counters["faults"] = double(MinorFaults() - faultsBefore) / double(state.iterations());
  state.counters["file_kb"] = double(list.files.Length(list.path).value_or(0)) / 1024.0;
}

BENCHMARK(BM_HuffmanEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibDeflateLevel1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_HuffmanDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibInflate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_List)
    ->ArgNames({"entries", "kb", "protected", "what"})
    ->Args({100, 32, 0, 0})
    ->Args({100, 32, 1, 0})
    ->Args({100, 16, 0, 0})
    ->Args({100, 64, 0, 0})
    ->Args({1, 10240, 0, 1})
    ->Args({1, 10240, 0, 2})
    ->Unit(benchmark::kMillisecond);

// ---- Hidden mode ----------------------------------------------------------------------

// Decodes 64 slices once each; callgrind counts only inside clsHuffman::Decode.
int DecodeDriver() {
  const auto& encoded = Encoded();
  size_t bytes = 0;
  Bytes out;
  for (size_t k = 0; k < 64 && k < encoded.size(); ++k) {
    if (!clsHuffman::Decode(encoded[k], out)) return 1;
    bytes += out.size();
  }
  std::printf("decoded_bytes %zu\n", bytes);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2 && std::string(argv[1]) == "--decode-driver") return DecodeDriver();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
