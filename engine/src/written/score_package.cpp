#include "written/score_package.h"

#include "written/music_xml_reader.h"

#include <zip.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr std::size_t largestContainer = 1 << 16;
constexpr zip_int64_t mostFiles = 1000; ///< that are looked at

using Archive = std::unique_ptr<zip_t, decltype(&zip_discard)>;
using File = std::unique_ptr<zip_file_t, decltype(&zip_fclose)>;
using Bytes = std::vector<std::uint8_t>;

Archive opened(std::span<const std::uint8_t> bytes)
{
    zip_error_t error{};
    zip_source_t *source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    zip_t *archive = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
    if (source && !archive)
        zip_source_free(source);
    return {archive, zip_discard};
}

/// A file of the archive; nothing where there is none, or where it is longer than `most`.
std::variant<Bytes, ReadFault> read(
    const Archive &archive, const std::string &name, std::size_t most)
{
    const File file(zip_fopen(archive.get(), name.c_str(), 0), zip_fclose);
    if (!file)
        return ReadFault::Unknown;
    constexpr std::size_t portion = 1 << 16;
    Bytes bytes;
    while (bytes.size() <= most) {
        const std::size_t had = bytes.size();
        bytes.resize(had + portion);
        const zip_int64_t got = zip_fread(file.get(), bytes.data() + had, portion);
        bytes.resize(had + static_cast<std::size_t>(std::max<zip_int64_t>(got, 0)));
        if (got < 0)
            return ReadFault::Unknown;
        if (got == 0)
            return bytes;
    }
    return ReadFault::TooLarge;
}

/// The name that the container gives.
std::optional<std::string> namedScore(const Archive &archive)
{
    const auto container = read(archive, "META-INF/container.xml", largestContainer);
    const auto *bytes = std::get_if<Bytes>(&container);
    pugi::xml_document document;
    if (!bytes || !document.load_buffer(bytes->data(), bytes->size()))
        return {};
    const std::string name = document.child("container")
                                 .child("rootfiles")
                                 .child("rootfile")
                                 .attribute("full-path")
                                 .value();
    return name.empty() ? std::nullopt : std::optional(name);
}

std::optional<std::string> firstScore(const Archive &archive)
{
    const zip_int64_t count = std::min(zip_get_num_entries(archive.get(), 0), mostFiles);
    for (zip_int64_t i = 0; i < count; ++i) {
        const char *name = zip_get_name(archive.get(), static_cast<zip_uint64_t>(i), 0);
        const std::string_view text = name ? name : "";
        if ((text.ends_with(".xml") || text.ends_with(".musicxml"))
            && !text.starts_with("META-INF"))
            return std::string(text);
    }
    return {};
}

} // namespace

bool isPackage(std::span<const std::uint8_t> bytes)
{
    constexpr std::string_view mark = "PK\x03\x04";
    return bytes.size() > mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
}

std::variant<Bytes, ReadFault> unpackScore(std::span<const std::uint8_t> bytes)
{
    const Archive archive = opened(bytes);
    if (!archive)
        return ReadFault::Unknown;
    auto name = namedScore(archive);
    if (!name)
        name = firstScore(archive);
    if (!name)
        return ReadFault::Unknown;
    return read(archive, *name, largestScore);
}

} // namespace kelo::engine
