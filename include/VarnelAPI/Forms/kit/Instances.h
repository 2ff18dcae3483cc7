#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/kit/Tasks.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

/// The envelopes around an entity, made and opened:
///
///     const auto issue = kit::stored(issues.insert_DynamicSchemaBaseClass(project, kit::envelope(draft, className)));
///
namespace VarnelAPI::Forms::kit {

namespace detail {

/// What a getter of a pointer, or of a list of pointers, points to.
template <class Pointer>
using Pointee = typename std::decay_t<Pointer>::element_type;
template <class Instance>
using ContentOf = Pointee<decltype(std::declval<Instance&>().getInstance())>;
template <class Content>
using EntityOf = Pointee<decltype(std::declval<Content&>().getProperties())>;
template <class Changed>
using ChangedOf = Pointee<decltype(std::declval<Changed&>().getChangedInstance())>;

/// @throws std::runtime_error naming `what` if the answer lacks it.
VARNEL_FORMS_API void requirePart(bool isThere, const char* what);
/// The members of `after` that differ from those of `before`; null for each that is missing there.
VARNEL_FORMS_API web::json::value differenceOf(const web::json::value& before, const web::json::value& after);
/// Whether the service refused an update because the instance was changed since.
VARNEL_FORMS_API bool isConflict(const std::exception_ptr& failure);

} // namespace detail

/// An entity in the two envelopes that an insert or update sends: any operation takes it as its body.
template <class Entity>
class Envelope {
public:
    /// `envelope` makes one.
    Envelope(std::shared_ptr<Entity> entity, utility::string_t className, utility::string_t eTag)
        : m_Entity(std::move(entity)), m_ClassName(std::move(className)), m_ETag(std::move(eTag)) {}

    /// The body, as operations take it.
    template <class Instance,
              std::enable_if_t<std::is_same_v<detail::EntityOf<detail::ContentOf<Instance>>, Entity>, int> = 0>
    operator std::shared_ptr<Instance>() const {
        auto content = std::make_shared<detail::ContentOf<Instance>>();
        content->setProperties(m_Entity);
        if (!m_ClassName.empty()) {
            content->setClassName(m_ClassName);
        }
        if (!m_ETag.empty()) {
            content->setETag(m_ETag);
        }
        auto instance = std::make_shared<Instance>();
        instance->setInstance(std::move(content));
        return instance;
    }
    /// The same.
    template <class Instance,
              std::enable_if_t<std::is_same_v<detail::EntityOf<detail::ContentOf<Instance>>, Entity>, int> = 0>
    operator api::Body<Instance>() const {
        return std::shared_ptr<Instance>(*this);
    }

private:
    std::shared_ptr<Entity> m_Entity;
    utility::string_t m_ClassName;
    utility::string_t m_ETag;
};

/// The body of an insert or update of this entity.
/// @param className the class; only of an issue the service asks for it.
/// @param eTag the version that an update is made for; without it, the update overwrites what others changed.
template <class Entity>
Envelope<std::decay_t<Entity>> envelope(Entity&& entity, utility::string_t className = utility::string_t(),
                                        utility::string_t eTag = utility::string_t()) {
    return {std::make_shared<std::decay_t<Entity>>(std::forward<Entity>(entity)), std::move(className),
            std::move(eTag)};
}

/// The instance as the service stored it, from the answer to an insert or update.
/// @throws std::runtime_error if the answer has none.
template <class Changed, class Content = detail::Pointee<
                             decltype(std::declval<detail::ChangedOf<Changed>&>().getInstanceAfterChange())>>
std::shared_ptr<Content> stored(const std::shared_ptr<Changed>& answer) {
    detail::requirePart(answer && answer->getChangedInstance(), "changedInstance");
    auto content = answer->getChangedInstance()->getInstanceAfterChange();
    detail::requirePart(content != nullptr, "instanceAfterChange");
    return content;
}
/// The same from the answer to a get.
template <class Instance, class Content = detail::ContentOf<Instance>, class = detail::EntityOf<Content>>
std::shared_ptr<Content> stored(const std::shared_ptr<Instance>& answer) {
    detail::requirePart(answer && answer->getInstance(), "instance");
    return answer->getInstance();
}
/// The same without waiting. The task fails as the operation's does, or with that std::runtime_error; it may be
/// dropped.
template <class Answer>
auto stored(const pplx::task<std::shared_ptr<Answer>>& call) {
    return observed(call.then([](const std::shared_ptr<Answer>& answer) { return stored(answer); }));
}

/// How many instances there are, of all classes that were counted.
template <class Count>
int64_t total(const std::shared_ptr<Count>& answer) {
    detail::requirePart(answer != nullptr, "instances");
    int64_t sum = 0;
    for (const auto& row : answer->getInstances()) {
        sum += row && row->getProperties() ? row->getProperties()->getCount() : 0;
    }
    return sum;
}
/// The same without waiting. The task fails as the operation's does; it may be dropped.
template <class Count>
pplx::task<int64_t> total(const pplx::task<std::shared_ptr<Count>>& call) {
    return observed(call.then([](const std::shared_ptr<Count>& answer) { return total(answer); }));
}

namespace detail {

/// One update under way: read, change, write, and again after a conflict.
template <class Content>
class Update : public std::enable_shared_from_this<Update<Content>> {
public:
    using Read = std::function<pplx::task<std::shared_ptr<Content>>()>;
    using Entity = EntityOf<Content>;
    using Write = std::function<pplx::task<std::shared_ptr<Content>>(const Envelope<Entity>&)>;

    Update(Read read, Write write, std::function<void(Entity&)> change, int attempts)
        : m_Read(std::move(read)), m_Write(std::move(write)), m_Change(std::move(change)), m_Attempts(attempts) {}

    pplx::task<std::shared_ptr<Content>> attempt() {
        --m_Attempts;
        return m_Read().then([self = this->shared_from_this()](const std::shared_ptr<Content>& content) {
            return self->write(content).then([self](const pplx::task<std::shared_ptr<Content>>& written) {
                try {
                    return pplx::task_from_result(written.get());
                } catch (...) {
                    if (self->m_Attempts == 0 || !isConflict(std::current_exception())) {
                        throw;
                    }
                }
                return self->attempt();
            });
        });
    }

private:
    pplx::task<std::shared_ptr<Content>> write(const std::shared_ptr<Content>& content) {
        requirePart(!content->getETag().empty(), "eTag");
        const auto entity = content->getProperties() ? content->getProperties() : std::make_shared<Entity>();
        // As text: nested models are changed in place, and copies share them.
        const web::json::value before = entity->toJson();
        m_Change(*entity);
        web::json::value difference = differenceOf(before, entity->toJson());
        if (difference.size() == 0) {
            return pplx::task_from_result(content);
        }
        Entity change;
        change.fromJson(difference);
        return m_Write(envelope(std::move(change), content->getClassName(), content->getETag()));
    }

    const Read m_Read;
    const Write m_Write;
    const std::function<void(Entity&)> m_Change;
    int m_Attempts;
};

} // namespace detail

/// Reads an instance, changes it, and sends what is changed, unless somebody else changed the instance meanwhile: then
/// all of it again, so that nobody's change is lost.
///
///     kit::update(issues, &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
///                 &api::BaseClassApi::update_DynamicSchemaBaseClass, project, id,
///                 [](model::DynamicSchemaBaseClass& issue) { issue.setStatus(_XPLATSTR("Closed")); });
///
/// @param change called with the properties as they are now, in the task library's pool, once per attempt. What it
///     unsets stays as it is, but for custom properties, which the service removes. If it changes nothing, nothing is
///     sent.
/// @param attempts how often at most.
/// @return the instance as it is now stored. It fails as the two operations do, after the last attempt with the
///     ApiException 409; as `change` does; and with std::runtime_error if the service gives the instance no eTag. It
///     may be dropped.
/// @throws std::invalid_argument, in the call, if `attempts` is less than 1; and what the get throws in the call.
template <class Api, class Get, class Post, class Change>
auto update(const Api& api, Get get, Post post, const utility::string_t& location, const utility::string_t& instanceId,
            Change change, int attempts = 5) {
    if (attempts < 1) {
        throw std::invalid_argument("an update takes at least one attempt");
    }
    const auto read = [=] { return stored((api.*get)(location, instanceId, api::TextOption())); };
    using Content = typename decltype(read())::result_type::element_type;
    const auto write = [=](const auto& body) { return stored((api.*post)(location, instanceId, body)); };
    return observed(std::make_shared<detail::Update<Content>>(read, write, std::move(change), attempts)->attempt());
}

} // namespace VarnelAPI::Forms::kit
