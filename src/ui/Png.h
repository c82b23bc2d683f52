// A small PNG writer for the icon files: the large icon images are stored as PNG streams, as
// the system's own icons store theirs, which keeps them a tenth of their bitmap size.
// Written here rather than taken from a library: the program depends on the system alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/Raster.h"

namespace mq::png {

// CRC-32 as PNG chunks and zip files use it (reflected, polynomial 0xEDB88320).
uint32_t Crc32(std::string_view data);
// Adler-32, the checksum that closes a zlib stream.
uint32_t Adler32(std::string_view data);

// A zlib stream (RFC 1950) of `data`: deflate (RFC 1951) with LZ77 over a 32 KB window and
// dynamic Huffman codes, or a stored block when that is smaller.
std::string ZlibCompress(std::string_view data);

// A PNG file of the image: 8-bit RGBA, not interlaced, each row with the filter that
// compresses it best by the usual sum-of-magnitudes guess.
std::string EncodePng(const art::Image& image);

}  // namespace mq::png
