#include "setup/json_file.h"

#include "files/whole_file.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>

namespace kelo::engine {

using Json = nlohmann::json;

Json readJsonFile(const std::filesystem::path &path)
{
    constexpr std::uintmax_t largest = 1 << 20;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)
        || std::filesystem::file_size(path, error) > largest)
        return {};
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    Json json = Json::parse(text, nullptr, false);
    return json.is_object() ? json : Json();
}

bool writeJsonFile(const std::filesystem::path &path, const Json &json)
{
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    return replaceFile(path, json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

} // namespace kelo::engine
