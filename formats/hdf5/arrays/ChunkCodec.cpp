#include "ChunkCodec.h"

#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5Handle.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <zstd.h>

#ifdef __SSE2__
#    include <emmintrin.h>
#endif

namespace meridyn::hdf5 {

namespace {

#ifdef __SSE2__

// Sixteen 4-byte values, four per register, to four planes of 16 bytes: bytes are isolated and packed.
void planesOf4(const __m128i in[4], unsigned char* to, std::size_t count, std::size_t at)
{
    const __m128i mask = _mm_set1_epi32(0xff);
    __m128i values[4] = {in[0], in[1], in[2], in[3]};
    for (std::size_t plane = 0; plane < 4; ++plane) {
        const __m128i low = _mm_packs_epi32(_mm_and_si128(values[0], mask), _mm_and_si128(values[1], mask));
        const __m128i high = _mm_packs_epi32(_mm_and_si128(values[2], mask), _mm_and_si128(values[3], mask));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + plane * count + at), _mm_packus_epi16(low, high));
        for (__m128i& value : values)
            value = _mm_srli_epi32(value, 8);
    }
}

void valuesOf4(const unsigned char* from, std::size_t count, std::size_t at, __m128i out[4])
{
    __m128i planes[4];
    for (std::size_t plane = 0; plane < 4; ++plane)
        planes[plane] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + plane * count + at));
    const __m128i low01 = _mm_unpacklo_epi8(planes[0], planes[1]);
    const __m128i high01 = _mm_unpackhi_epi8(planes[0], planes[1]);
    const __m128i low23 = _mm_unpacklo_epi8(planes[2], planes[3]);
    const __m128i high23 = _mm_unpackhi_epi8(planes[2], planes[3]);
    out[0] = _mm_unpacklo_epi16(low01, low23);
    out[1] = _mm_unpackhi_epi16(low01, low23);
    out[2] = _mm_unpacklo_epi16(high01, high23);
    out[3] = _mm_unpackhi_epi16(high01, high23);
}

__m128i pick(__m128i a, __m128i b, bool high)
{
    const __m128 x = _mm_castsi128_ps(a);
    const __m128 y = _mm_castsi128_ps(b);
    return _mm_castps_si128(high ? _mm_shuffle_ps(x, y, 0xdd) : _mm_shuffle_ps(x, y, 0x88));
}

// Both give how many values they have done; the rest is the caller's.
std::size_t shuffleFast(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t size)
{
    std::size_t done = 0;
    for (; (size == 4 || size == 8) && done + 16 <= count; done += 16) {
        const auto* in = reinterpret_cast<const __m128i*>(from + done * size);
        __m128i values[8];
        for (std::size_t i = 0; i < size; ++i)
            values[i] = _mm_loadu_si128(in + i);
        if (size == 4) {
            planesOf4(values, to, count, done);
            continue;
        }
        __m128i low[4];
        __m128i high[4];
        for (int i = 0; i < 4; ++i) {
            low[i] = pick(values[2 * i], values[2 * i + 1], false);
            high[i] = pick(values[2 * i], values[2 * i + 1], true);
        }
        planesOf4(low, to, count, done);
        planesOf4(high, to + 4 * count, count, done);
    }
    return done;
}

std::size_t unshuffleFast(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t size)
{
    std::size_t done = 0;
    for (; (size == 4 || size == 8) && done + 16 <= count; done += 16) {
        auto* out = reinterpret_cast<__m128i*>(to + done * size);
        __m128i low[4];
        valuesOf4(from, count, done, low);
        if (size == 4) {
            for (int i = 0; i < 4; ++i)
                _mm_storeu_si128(out + i, low[i]);
            continue;
        }
        __m128i high[4];
        valuesOf4(from + 4 * count, count, done, high);
        for (int i = 0; i < 4; ++i) {
            _mm_storeu_si128(out + 2 * i, _mm_unpacklo_epi32(low[i], high[i]));
            _mm_storeu_si128(out + 2 * i + 1, _mm_unpackhi_epi32(low[i], high[i]));
        }
    }
    return done;
}

#else

std::size_t shuffleFast(const unsigned char*, unsigned char*, std::size_t, std::size_t)
{
    return 0;
}

std::size_t unshuffleFast(const unsigned char*, unsigned char*, std::size_t, std::size_t)
{
    return 0;
}

#endif

// The filter itself, for HDF5's own reading and writing in this process. HDF5 frees and takes memory of malloc.
std::size_t runFilter(unsigned flags, std::size_t valueCount, const unsigned* values, std::size_t size,
                      std::size_t* bufferSize, void** buffer)
{
    const bool isReading = (flags & H5Z_FLAG_REVERSE) != 0;
    const unsigned long long content = isReading ? ZSTD_getFrameContentSize(*buffer, size) : ZSTD_compressBound(size);
    // What a chunk says that it holds is taken from memory before it is looked at.
    const unsigned long long plausible = std::max<unsigned long long>(64 * 1024 * 1024, 1000 * size);
    if (isReading && content > plausible)
        return 0;
    void* const result = std::malloc(content > 0 ? content : 1);
    if (result == nullptr)
        return 0;
    const int level = valueCount > 0 ? static_cast<int>(values[0]) : 3;
    const std::size_t done = isReading ? ZSTD_decompress(result, content, *buffer, size)
                                       : ZSTD_compress(result, content, *buffer, size, level);
    if (ZSTD_isError(done)) {
        std::free(result);
        return 0;
    }
    std::free(*buffer);
    *buffer = result;
    *bufferSize = content;
    return done;
}

} // namespace

void shuffleBytes(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t valueSize)
{
    const std::size_t done = shuffleFast(from, to, count, valueSize);
    for (std::size_t byte = 0; byte < valueSize; ++byte)
        for (std::size_t i = done; i < count; ++i)
            to[byte * count + i] = from[i * valueSize + byte];
}

void unshuffleBytes(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t valueSize)
{
    const std::size_t done = unshuffleFast(from, to, count, valueSize);
    for (std::size_t byte = 0; byte < valueSize; ++byte)
        for (std::size_t i = done; i < count; ++i)
            to[i * valueSize + byte] = from[byte * count + i];
}

struct ChunkCodec::Contexts {
    ZSTD_CCtx* encoder = ZSTD_createCCtx();
    ZSTD_DCtx* decoder = ZSTD_createDCtx();

    ~Contexts()
    {
        ZSTD_freeCCtx(encoder);
        ZSTD_freeDCtx(decoder);
    }
};

ChunkCodec::ChunkCodec() : _contexts(std::make_unique<Contexts>())
{}

ChunkCodec::~ChunkCodec() = default;

void ChunkCodec::prepare(std::size_t chunkBytes, std::size_t valueSize)
{
    _valueSize = valueSize;
    _raw.resize(chunkBytes);
    _shuffled.resize(chunkBytes);
}

void ChunkCodec::encode(int level, std::vector<unsigned char>& encoded)
{
    shuffleBytes(_raw.data(), _shuffled.data(), _raw.size() / _valueSize, _valueSize);
    encoded.resize(ZSTD_compressBound(_raw.size()));
    const std::size_t size = ZSTD_compressCCtx(_contexts->encoder, encoded.data(), encoded.size(), _shuffled.data(),
                                               _shuffled.size(), level);
    if (ZSTD_isError(size))
        throw FormatError(std::string("Zstandard: ") + ZSTD_getErrorName(size));
    encoded.resize(size);
}

void ChunkCodec::decode(const unsigned char* encoded, std::size_t size)
{
    const std::size_t found =
        ZSTD_decompressDCtx(_contexts->decoder, _shuffled.data(), _shuffled.size(), encoded, size);
    if (ZSTD_isError(found))
        throw FormatError(std::string("a chunk is damaged: ") + ZSTD_getErrorName(found));
    if (found != _shuffled.size())
        throw FormatError("a chunk has " + std::to_string(found) + " bytes, " + std::to_string(_shuffled.size()) +
                          " expected");
    unshuffleBytes(_shuffled.data(), _raw.data(), _raw.size() / _valueSize, _valueSize);
}

// Nothing else is ever attached to a file.
ChunkWorkspace& chunksOf(Hdf5File& file)
{
    if (!file.attachment())
        file.attachment() = std::make_unique<ChunkWorkspace>();
    return static_cast<ChunkWorkspace&>(*file.attachment());
}

// Each time, in place of what is registered: to ask whether it is there would load a plug-in, and an application may
// have closed the library in between.
void registerZstandard()
{
    H5Z_class2_t filter{};
    filter.version = H5Z_CLASS_T_VERS;
    filter.id = zstandardFilter;
    filter.encoder_present = 1;
    filter.decoder_present = 1;
    filter.name = "Zstandard";
    filter.filter = runFilter;
    checkedCall(H5Zregister(&filter), "Zstandard filter");
}

} // namespace meridyn::hdf5
