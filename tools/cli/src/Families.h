#pragma once

#include "Json.h"

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/kit/Pages.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VarnelAPI::Forms::cli {

using Client = std::shared_ptr<api::ApiClient>;

/// What the path of an operation names, percent-encoded. Texts that an operation doesn't take are not looked at.
struct Place {
    std::string location;
    /// The class that is listed, or that of the owner.
    std::string className;
    /// The instance to which the listed ones belong.
    std::string owner;
};

struct ListQuery {
    kit::PageQuery options;
    int skip = 0;
    /// How many instances are wanted at most; 0 for all.
    int top = 0;
};

/// Gives the instances of a list, page by page, and an empty page after the last.
using NextPage = std::function<std::vector<Json>()>;

/// One kind of resource, with what the service offers for it: an operation that it does not offer is empty. Instances
/// are JSON as the service writes them, without the outer envelope: {"instanceId", "className", "eTag", "properties"}.
struct Family {
    /// What the user writes, and what one of them is called.
    std::string name;
    std::string one;
    std::string about;
    /// Schema and class, as paths have them.
    std::string path;
    /// What a table shows unless asked for more, separated by commas.
    std::string columns;
    /// The family whose instances own those of this one, if they have owners.
    std::string owner;

    std::function<NextPage(const Client&, const Place&, const ListQuery&)> list;
    /// Of an owner, or where there are no owners, of a class.
    std::function<NextPage(const Client&, const Place&, const ListQuery&)> listWithin;
    std::function<Json(const Client&, const Place&, const std::string& id, const api::TextOption& select)> get;
    /// One row for each class.
    std::function<std::vector<Json>(const Client&, const Place&)> count;
    std::function<Json(const Client&, const Place&, const Json& content)> create;
    std::function<Json(const Client&, const Place&, const Json& content)> createWithin;
    std::function<Json(const Client&, const Place&, const std::string& id, const Json& content)> update;
    std::function<void(const Client&, const Place&, const std::string& id)> remove;
    std::function<void(const Client&, const Place&, const std::string& id)> download;
    /// Whether its instances take a file.
    bool takesFiles = false;
};

/// All families, in the order of their names.
const std::vector<Family>& families();

/// The family of that name, in the singular or plural.
/// @throws Usage for another name.
const Family& family(const std::string& name);

} // namespace VarnelAPI::Forms::cli
