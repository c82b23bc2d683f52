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
#include <iterator>
#include <random>
#include <sstream>

#include <sys/resource.h>

#include "fakes/FakeRichTextBox.h"
#include "listfiles/FileOperations.h"
#include "listfiles/clsHuffman.h"
#include "platform/StdFileSystem.h"

namespace {

using namespace mq;

// ---- Text that reads like English prose ------------------------------------------------

constexpr const char kWords[] =
    "the of and to a in is it you that he was for on are with as I his they be at one have "
    "this from or had by word but what some we can out other were all there when up use your "
    "how said an each she which do their time if will way about many then them write would "
    "like so these her long make thing see him two has look more day could go come did number "
    "sound no most people my over know water than call first who may down side been now find "
    "any new work part take get place made live where after back little only round man year "
    "came show every good me give our under name very through just form sentence great think "
    "say help low line differ turn cause much mean before move right boy old too same tell "
    "does set three want air well also play small end put home read hand port large spell add "
    "even land here must big high such follow act why ask men change went light kind off need "
    "house picture try us again animal point mother world near build self earth father head "
    "stand own page should country found answer school grow study still learn plant cover "
    "food sun four between state keep eye never last let thought city tree cross farm hard "
    "start might story saw far sea draw left late run while press close night real life few "
    "north clipboard Marquill window October London quietly jumped yesterday because although "
    "journey";

// Several documents, each with its own word ranking and Zipf exponent, so that slices of
// different documents have different statistics.
std::string MakeDocument(uint64_t seed, size_t size) {
  static const std::vector<std::string> words = [] {
    std::istringstream in(kWords);
    return std::vector<std::string>(std::istream_iterator<std::string>(in), {});
  }();
  std::mt19937_64 rng(seed);
  std::vector<size_t> order(words.size());
  std::vector<double> weights(words.size());
  const double exponent = 0.9 + 0.1 * double(seed % 5);
  for (size_t k = 0; k < words.size(); ++k) {
    order[k] = k;
    weights[k] = 1.0 / std::pow(double(k + 1), exponent);
  }
  // Keep the commonest words near the top but shuffle within bands.
  for (size_t band = 0; band < words.size(); band += 20)
    std::shuffle(order.begin() + long(band),
                 order.begin() + long(std::min(words.size(), band + 20)), rng);
  std::discrete_distribution<size_t> pick(weights.begin(), weights.end());
  std::uniform_int_distribution<int> sentenceLength(4, 24), percent(0, 99);
  std::string out;
  out.reserve(size + 256);
  while (out.size() < size) {
    const int count = sentenceLength(rng);
    for (int w = 0; w < count; ++w) {
      std::string word = words[order[pick(rng)]];
      if (w == 0) word[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[0])));
      if (percent(rng) < 2) word = std::to_string(rng() % 2000);
      out += word;
      if (w + 1 < count) out += percent(rng) < 8 ? ", " : " ";
    }
    const int end = percent(rng);
    out += end < 85 ? ". " : end < 93 ? "? " : "! ";
    if (percent(rng) < 12) out += "\r\n\r\n";
    if (percent(rng) < 3) out += "\"Quoted speech,\" she said; (and an aside). ";
  }
  out.resize(size);
  return out;
}

// Many slices of different lengths from different documents and offsets, and their bytes.
const std::vector<std::string>& Slices() {
  static const std::vector<std::string> slices = [] {
    std::vector<std::string> docs, out;
    for (uint64_t d = 0; d < 6; ++d) docs.push_back(MakeDocument(1000 + d, 2 << 20));
    std::mt19937_64 rng(42);
    for (int k = 0; k < 300; ++k) {
      const std::string& doc = docs[rng() % docs.size()];
      const size_t length = 4096 + rng() % (60 * 1024);
      out.push_back(doc.substr(rng() % (doc.size() - length), length));
    }
    return out;
  }();
  return slices;
}

const std::vector<Bytes>& Encoded() {
  static const std::vector<Bytes> encoded = [] {
    std::vector<Bytes> out;
    for (const auto& s : Slices()) out.push_back(clsHuffman::Encode(s));
    return out;
  }();
  return encoded;
}

// ---- Huffman against zlib --------------------------------------------------------------

// Runs `code` on every slice (by its index); it returns the bytes it produced, whose share of
// the input is the "ratio".
template <typename Code>
void Throughput(benchmark::State& state, Code code) {
  size_t in = 0, out = 0;
  for (const auto& s : Slices()) in += s.size();
  for (auto _ : state)
    for (size_t k = 0; k < Slices().size(); ++k) out += code(k);
  state.SetBytesProcessed(int64_t(state.iterations() * in));
  state.counters["ratio"] = double(out) / double(state.iterations() * in);
}

// zlib keeps one stream, reset for every slice, as a codec kept for a whole file would.
void Point(z_stream& z, const void* in, size_t size, std::vector<Bytef>& out) {
  z.next_in = static_cast<Bytef*>(const_cast<void*>(in));
  z.avail_in = uInt(size);
  z.next_out = out.data();
  z.avail_out = uInt(out.size());
}

void BM_HuffmanEncode(benchmark::State& state) {
  Throughput(state, [](size_t k) {
    Bytes e = clsHuffman::Encode(Slices()[k]);
    benchmark::DoNotOptimize(e.data());
    return e.size();
  });
}

void BM_HuffmanDecode(benchmark::State& state) {
  Bytes out;
  Throughput(state, [&](size_t k) {
    if (!clsHuffman::Decode(Encoded()[k], out)) state.SkipWithError("decode failed");
    benchmark::DoNotOptimize(out.data());
    return out.size();
  });
}

void BM_ZlibDeflateLevel1(benchmark::State& state) {
  z_stream z{};
  deflateInit(&z, 1);
  std::vector<Bytef> out(deflateBound(&z, 128 * 1024));
  Throughput(state, [&](size_t k) {
    deflateReset(&z);
    Point(z, Slices()[k].data(), Slices()[k].size(), out);
    if (deflate(&z, Z_FINISH) != Z_STREAM_END) state.SkipWithError("deflate failed");
    return size_t(z.total_out);
  });
  deflateEnd(&z);
}

void BM_ZlibInflate(benchmark::State& state) {
  std::vector<std::vector<Bytef>> packed;
  for (const auto& s : Slices()) {
    uLongf size = compressBound(uLong(s.size()));
    packed.emplace_back(size);
    compress2(packed.back().data(), &size, reinterpret_cast<const Bytef*>(s.data()), s.size(), 1);
    packed.back().resize(size);
  }
  z_stream z{};
  inflateInit(&z);
  std::vector<Bytef> out(128 * 1024);
  Throughput(state, [&](size_t k) {
    inflateReset(&z);
    Point(z, packed[k].data(), packed[k].size(), out);
    if (inflate(&z, Z_FINISH) != Z_STREAM_END) state.SkipWithError("inflate failed");
    benchmark::DoNotOptimize(out.data());
    return size_t(z.total_out);
  });
  inflateEnd(&z);
}

// ---- Lists saved and loaded -----------------------------------------------------------

long MinorFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

// A list of plain entries of prose on disk as a list file. Arguments: entries, KB per entry,
// protected, what (0 save + load, 1 save, 2 load).
void BM_List(benchmark::State& state) {
  const int count = int(state.range(0)), what = int(state.range(3));
  const size_t bytes = size_t(state.range(1)) * 1024;
  const bool isProtected = state.range(2) != 0;
  ListModel rows;
  ClipStore store{rows};
  test::FakeRichTextBox rtb;  // plain entries only: never asked
  Windows1252 cp;
  StdFileSystem files;
  ListContext context{store, rtb, cp, files};
  {
    const std::string doc = MakeDocument(7, size_t(count) * bytes);
    for (int k = 0; k < count; ++k) {
      Text text = Widen(std::string_view(doc).substr(size_t(k) * bytes, bytes));
      store.Append(ClipEntry::Plain(text), text);
    }
  }
  const Text path =
      (std::filesystem::temp_directory_path() / (isProtected ? "mq-bench.mqp" : "mq-bench.mql"))
          .u16string();
  auto save = [&] {
    return FileOperations::SaveListFile(context, path, isProtected, u"password").ok;
  };
  // Opening as new replaces the list with what it was, so every round starts alike.
  auto load = [&] {
    return FileOperations::LoadListFile(context, path, FileOperations::LoadMode::OpenAsNew,
                                        isProtected, u"password")
        .Loaded();
  };
  if (what == 2 && !save()) state.SkipWithError("save failed");
  const long faultsBefore = MinorFaults();
  for (auto _ : state) {
    if (what != 2 && !save()) state.SkipWithError("save failed");
    if (what != 1 && !load()) state.SkipWithError("load failed");
  }
  // Fresh pages the allocator got from the system: on a busy virtual machine each costs
  // microseconds, and they make much of the time here.
  state.counters["faults"] = double(MinorFaults() - faultsBefore) / double(state.iterations());
  state.counters["file_kb"] = double(files.Length(path).value_or(0)) / 1024.0;
  files.Delete(path);
}

BENCHMARK(BM_HuffmanEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibDeflateLevel1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_HuffmanDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibInflate)->Unit(benchmark::kMillisecond);
// 100 entries of 32 KB plain and protected (and its save and load apart), the doubling series 1.6, 3.2, 6.4, 12.8 MB, and the
// save and the load of one 10 MB entry.
BENCHMARK(BM_List)
    ->ArgNames({"entries", "kb", "protected", "what"})
    ->Args({100, 32, 0, 0})
    ->Args({100, 32, 1, 0})
    ->Args({100, 32, 0, 1})
    ->Args({100, 32, 0, 2})
    ->Args({100, 16, 0, 0})
    ->Args({100, 64, 0, 0})
    ->Args({100, 128, 0, 0})
    ->Args({1, 10240, 0, 1})
    ->Args({1, 10240, 0, 2})
    ->Unit(benchmark::kMillisecond);

// Decodes 64 slices once each; callgrind counts only inside clsHuffman::Decode.
int DecodeDriver() {
  size_t bytes = 0;
  Bytes out;
  for (size_t k = 0; k < 64; ++k) {
    if (!clsHuffman::Decode(Encoded()[k], out)) return 1;
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
