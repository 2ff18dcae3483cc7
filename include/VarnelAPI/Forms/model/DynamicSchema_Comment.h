#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A comment on an instance. Getters return copies.
class VARNEL_FORMS_API DynamicSchema_Comment : public Model {
    VARNEL_FORMS_MODEL(DynamicSchema_Comment);

    /// The name of the author.
    VARNEL_FORMS_PROPERTY(utility::string_t, Author, author, "Author");
    /// The id that goes with `Author`.
    VARNEL_FORMS_PROPERTY(utility::string_t, AuthorId, authorId, "AuthorId");
    /// When it was created.
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate, "CreatedDate");
    /// When it was last modified.
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate, "ModifiedDate");
    /// The comment itself.
    VARNEL_FORMS_PROPERTY(utility::string_t, Text, text, "Text");
};

/// The identity and properties of a comment.
class VARNEL_FORMS_API DynamicSchema_CommentInstanceContent : public InstanceContentOf<DynamicSchema_Comment> {};
/// One instance: a comment with its identity.
class VARNEL_FORMS_API DynamicSchema_CommentInstance : public InstanceOf<DynamicSchema_CommentInstanceContent> {};
/// A list of comments.
class VARNEL_FORMS_API DynamicSchema_CommentInstances : public InstancesOf<DynamicSchema_CommentInstanceContent> {};
/// What was done to a comment, and how it is since.
class VARNEL_FORMS_API DynamicSchema_CommentChangedInstanceContent
    : public ChangedInstanceContentOf<DynamicSchema_CommentInstanceContent> {};
/// One change of comments.
class VARNEL_FORMS_API DynamicSchema_CommentChangedInstance
    : public ChangedInstanceOf<DynamicSchema_CommentChangedInstanceContent> {};
/// A list of changes of comments.
class VARNEL_FORMS_API ChangedDynamicSchema_CommentInstances
    : public ChangedInstancesOf<DynamicSchema_CommentChangedInstanceContent> {};
/// What a count of comments says.
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount_properties : public InstanceCountProperties {};
/// A count of comments, with its identity.
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount_instances
    : public CountInstanceOf<DynamicSchema_CommentInstanceCount_properties> {};
/// Counts of comments, one per class.
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount
    : public InstancesOf<DynamicSchema_CommentInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
