#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchema_Comment.h>

namespace VarnelAPI::Forms::api {

/// The comments on instances. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API CommentApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the comments, per class.
    /// GET `{location}/DynamicSchema/_Comment/$count`
    detail::ModelTask<model::DynamicSchema_CommentInstanceCount>
    count_DynamicSchemaComment(const utility::string_t& location) const;

    /// Deletes the comment `instanceId`.
    /// DELETE `{location}/DynamicSchema/_Comment/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaComment_instanceId(const utility::string_t& location,
                                                            const utility::string_t& instanceId) const;

    /// Reads the comment `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/_Comment/{instanceId}/`
    detail::ModelTask<model::DynamicSchema_CommentInstance>
    get_DynamicSchemaComment_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                        const detail::TextOption& select = boost::none) const;

    /// Creates a comment of the issue `issueInstID` of class `formClassName`, or, if either is empty, a comment
    /// of no issue. Yields it as the service stored it.
    /// POST `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/_Comment` or
    /// `{projInstID}/DynamicSchema/_Comment`
    detail::ModelTask<model::DynamicSchema_CommentChangedInstance>
    insert_DynamicSchemaComment(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                const utility::string_t& issueInstID,
                                const detail::Body<model::DynamicSchema_CommentInstance>& body) const;

    /// Lists the comments.
    /// GET `{location}/DynamicSchema/_Comment`
    detail::ModelTask<model::DynamicSchema_CommentInstances> select_DynamicSchemaComment(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Lists the comments of the issue `issueInstID` of class `formClassName`; if any of the three texts is empty, all
    /// comments.
    /// GET `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/_Comment` or `{projInstID}/DynamicSchema/_Comment`
    detail::ModelTask<model::DynamicSchema_CommentInstances> select_DynamicSchemaComment2(
        const utility::string_t& projInstID, const utility::string_t& formClassName,
        const utility::string_t& issueInstID, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the comment `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/_Comment/{instanceId}/`
    detail::ModelTask<model::DynamicSchema_CommentChangedInstance>
    update_DynamicSchemaComment(const utility::string_t& location, const utility::string_t& instanceId,
                                const detail::Body<model::DynamicSchema_CommentInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
