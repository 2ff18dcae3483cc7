#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchema_Comment.h>

namespace VarnelAPI::Forms::api {

/// The comments on instances. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API CommentApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the comments, per class.
    /// GET `{location}/DynamicSchema/_Comment/$count`
    ModelTask<model::DynamicSchema_CommentInstanceCount>
    count_DynamicSchemaComment(const utility::string_t& location) const;

    /// Deletes the comment `instanceId`.
    /// DELETE `{location}/DynamicSchema/_Comment/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaComment_instanceId(const utility::string_t& location,
                                                            const utility::string_t& instanceId) const;

    /// Reads the comment `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/_Comment/{instanceId}/`
    ModelTask<model::DynamicSchema_CommentInstance>
    get_DynamicSchemaComment_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                        const TextOption& select = boost::none) const;

    /// Creates a comment of the issue `issueInstID` of class `formClassName`, or, if either is empty, a comment
    /// of no issue. Yields it as the service stored it.
    /// POST `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/_Comment` or
    /// `{projInstID}/DynamicSchema/_Comment`
    ModelTask<model::DynamicSchema_CommentChangedInstance>
    insert_DynamicSchemaComment(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                const utility::string_t& issueInstID,
                                const Body<model::DynamicSchema_CommentInstance>& body) const;

    /// Lists the comments.
    /// GET `{location}/DynamicSchema/_Comment`
    ModelTask<model::DynamicSchema_CommentInstances>
    select_DynamicSchemaComment(const utility::string_t& location, const TextOption& filter = boost::none,
                                const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                                const NumberOption& top = boost::none) const;

    /// Lists the comments of the issue `issueInstID` of class `formClassName`; if any of the three texts is empty, all
    /// comments.
    /// GET `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/_Comment` or `{projInstID}/DynamicSchema/_Comment`
    ModelTask<model::DynamicSchema_CommentInstances>
    select_DynamicSchemaComment2(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                 const utility::string_t& issueInstID, const TextOption& filter = boost::none,
                                 const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                 const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                                 const NumberOption& top = boost::none) const;

    /// Changes the comment `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/_Comment/{instanceId}/`
    ModelTask<model::DynamicSchema_CommentChangedInstance>
    update_DynamicSchemaComment(const utility::string_t& location, const utility::string_t& instanceId,
                                const Body<model::DynamicSchema_CommentInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
