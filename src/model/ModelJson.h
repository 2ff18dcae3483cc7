#pragma once

#include <VarnelAPI/Forms/model/Model.h>

#include <cstdint>
#include <string>

/// Between models and JSON: reading from a tree or, by the fast lane, from the text of an answer; writing as a tree or
/// as a text.
namespace VarnelAPI::Forms::model::detail {

/// What the visitors are made of: it lets them see what a model describes.
class ModelAccess {
public:
    static void describe(Model& model, PropertyVisitor& visit) { model.describe(visit); }
    static const KeyIndex& keyIndex(const Model& model) { return model.keyIndex(); }
    static CustomProperties* customProperties(Model& model) { return model.customProperties(); }
};

/// Whether a JSON tree stays as it is while it is read, or gives away its texts.
enum class JsonUse { Keep, Consume };

/// `describe` serves reading and writing alike, so it is not const; the writers only look.
inline Model& forWriting(const Model& model) {
    return const_cast<Model&>(model);
}

std::string pathStep(Key key);
std::string pathStep(std::size_t index);
[[noreturn]] void rethrowNaming(const std::string& step, const web::json::json_exception& error);

/// Runs `convert`, and puts `step` in front of what the JSON library has to say, so that the text reads
/// "instances[3].properties.Size: Not a number".
template <class Step, class Convert>
void naming(Step step, Convert convert) {
    try {
        convert();
    } catch (const web::json::json_exception& error) {
        rethrowNaming(pathStep(step), error);
    }
}

void readJson(Model& model, web::json::value& json, JsonUse use);
void readList(web::json::value& json, JsonUse use, ListProperty& property);

/// How many answers the fast lane was given, and how many of them it left to the tree, in this process so far.
struct LaneCounts {
    uint64_t given = 0;
    uint64_t left = 0;
};

/// Fills `model`, which must be a fresh one, from an answer's text, UTF-8, without a tree; where that is remarkable in
/// any way, or the library was built without simdjson, it is false. Then `model` may be half full: the tree takes the
/// text into another one, so that all errors, and what follows from oddities, come from one place. Exported, as are the
/// counts, for the tests that hold the two ways against each other.
VARNEL_FORMS_API bool readFast(Model& model, const std::string& text);
VARNEL_FORMS_API LaneCounts laneCounts();
/// The space that should be left at the end of a text, lest it be copied.
constexpr std::size_t lanePadding = 64;

web::json::value writeJson(const Model& model);
web::json::value listToJson(const ListProperty& property);

/// The text of `model.toJson().serialize()`, in UTF-8, and the same exceptions, without a tree. The models in it whose
/// classes are the caller's own write themselves.
VARNEL_FORMS_API std::string writeText(const Model& model);

} // namespace VarnelAPI::Forms::model::detail
