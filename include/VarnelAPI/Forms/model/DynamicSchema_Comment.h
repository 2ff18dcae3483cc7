#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A comment on an instance. Getters return copies.
class VARNEL_FORMS_API DynamicSchema_Comment : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Author, author);
    VARNEL_FORMS_PROPERTY(utility::string_t, AuthorId, authorId);
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate);
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate);
    VARNEL_FORMS_PROPERTY(utility::string_t, Text, text);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API DynamicSchema_CommentInstanceContent : public detail::InstanceContentOf<DynamicSchema_Comment> {
};
class VARNEL_FORMS_API DynamicSchema_CommentInstance : public detail::InstanceOf<DynamicSchema_CommentInstanceContent> {
};
class VARNEL_FORMS_API DynamicSchema_CommentInstances
    : public detail::InstancesOf<DynamicSchema_CommentInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_CommentChangedInstanceContent
    : public detail::ChangedInstanceContentOf<DynamicSchema_CommentInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_CommentChangedInstance
    : public detail::ChangedInstanceOf<DynamicSchema_CommentChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedDynamicSchema_CommentInstances
    : public detail::ChangedInstancesOf<DynamicSchema_CommentChangedInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchema_CommentInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchema_CommentInstanceCount
    : public detail::InstancesOf<DynamicSchema_CommentInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
