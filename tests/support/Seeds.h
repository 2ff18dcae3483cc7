#pragma once

#include <VarnelAPI/Forms.h>

#include "Text.h"

#include <boost/core/demangle.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>

/// The fuzz targets start from what the tests try: a test that runs with FORMS_TEST_SEEDS keeps its inputs in the
/// directory of that name, in the form that the target of each folder reads.
namespace forms_test {

/// Inputs of the fuzzers are no longer than this.
constexpr std::size_t longestSeed = 4096;

inline void seed(const std::string& target, const std::string& input) {
    const char* directory = std::getenv("FORMS_TEST_SEEDS");
    if (directory == nullptr || input.size() > longestSeed) {
        return;
    }
    const auto folder = std::filesystem::path(directory) / target;
    std::filesystem::create_directories(folder);
    std::ostringstream name;
    name << std::hex << std::hash<std::string>()(input);
    std::ofstream file(folder / name.str(), std::ios::binary);
    EXPECT_TRUE(file << input) << folder;
}

/// One after the other, each ended by a tab.
template <class... Text>
std::string fields(const Text&... texts) {
    std::string joined;
    ((joined += utf8(texts) + "\t"), ...);
    return joined;
}

inline std::string classOf(const VarnelAPI::Forms::model::ModelBase& model) {
    const std::string name = boost::core::demangle(typeid(model).name());
    return name.substr(name.rfind(':') + 1);
}

/// `json` is read into a model of this class.
inline void seedJson(const VarnelAPI::Forms::model::ModelBase& model, const std::string& json) {
    for (const char* target : {"ModelJson", "FastLane"}) {
        seed(target, classOf(model) + "\n" + json);
    }
}

/// The parts are read into a model of this class.
inline void seedParts(const VarnelAPI::Forms::model::ModelBase& model,
                      const VarnelAPI::Forms::model::MultipartFormData& multipart) {
    std::string parts;
    for (const auto& part : multipart.getContents()) {
        std::ostringstream data;
        part->writeTo(data);
        parts += fields(part->getName(), data.str());
    }
    seed("MultipartRead", classOf(model) + "\n" + parts);
}

} // namespace forms_test
