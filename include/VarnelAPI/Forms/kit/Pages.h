#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/kit/Tasks.h>

#include <atomic>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Lists of any length, page by page:
///
///     for (const auto& issue : kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
///                                  .filter(_XPLATSTR("Status eq 'Open'"))
///                                  .orderby(_XPLATSTR("_DueDate"))) {
///         ...
///     }
///
/// While a page is used, the next one is fetched. Who stops early has sent at most one request too many. An error comes
/// at the step that needed the page. The list ends at the first empty page, not at one that is shorter than asked for:
/// the service may have a limit of its own.
///
/// Pages are found by counting. Give an order that is unique and doesn't change, or what others insert and delete
/// meanwhile moves instances from one page to another, and one is seen twice or not at all.
namespace VarnelAPI::Forms::kit {

template <class Entity>
class Filter;

/// The query options of all pages, each sent only when it is set.
struct PageQuery {
    api::TextOption filter;         ///< `$filter`
    api::TextOption select;         ///< `$select`
    api::TextOption orderby;        ///< `$orderby`
    api::TextOption filtersettings; ///< `api.filtersettings`
};

/// One way through a list, without waiting. Copies share the way. One `next` at a time.
template <class Instances>
class PageCursor {
public:
    /// What a list holds: a shared pointer to an instance's content.
    using Element = typename std::decay_t<decltype(std::declval<Instances&>().getInstances())>::value_type;
    using Page = std::vector<Element>; ///< What came at once.
    /// Fetches at most `top` instances after the first `skip`.
    using Fetch = std::function<pplx::task<std::shared_ptr<Instances>>(const PageQuery&, int skip, int top)>;

    /// `Pages::cursor` makes one more easily.
    PageCursor(Fetch fetch, PageQuery query, int pageSize)
        : m_Way(std::make_shared<Way>(std::move(fetch), std::move(query), pageSize)) {}

    /// The next page, an empty pointer after the last one. When it is there, the one after it is already asked for.
    /// What the service sent as null is left out. After a failure, the next call asks for the same page again.
    /// The task fails as the operation does; with std::runtime_error if the service sends the same page again and
    /// again.
    /// @throws std::logic_error in the call if the task of the last call isn't done.
    pplx::task<std::shared_ptr<const Page>> next() const {
        if (m_Way->isBusy.exchange(true)) {
            throw std::logic_error("one page after the other: the last call of next has not finished");
        }
        auto asked = m_Way->ahead ? *m_Way->ahead : m_Way->ask();
        m_Way->ahead.reset();
        return observed(asked.then([way = m_Way](const pplx::task<std::shared_ptr<Instances>>& arrived) {
            struct AtTheEnd {
                std::atomic<bool>& isBusy;
                ~AtTheEnd() { isBusy = false; }
            };
            const AtTheEnd atTheEnd{way->isBusy};
            return way->take(arrived.get());
        }));
    }

private:
    struct Way {
        Way(Fetch f, PageQuery q, int size) : fetch(std::move(f)), query(std::move(q)), pageSize(size) {}

        /// Asks for the page at `skip`. What is thrown in the call is kept for whoever needs the page.
        pplx::task<std::shared_ptr<Instances>> ask() const {
            try {
                return observed(fetch(query, skip, pageSize));
            } catch (...) {
                return observed(pplx::task_from_exception<std::shared_ptr<Instances>>(std::current_exception()));
            }
        }

        std::shared_ptr<const Page> take(const std::shared_ptr<Instances>& answer) {
            const Page& all = answer->getInstances();
            if (isEnd(all)) {
                ahead = pplx::task_from_result(std::make_shared<Instances>());
                return nullptr;
            }
            first = all.front() ? all.front()->getInstanceId() : utility::string_t();
            skip += static_cast<int>(all.size());
            ahead = ask();
            auto page = std::make_shared<Page>();
            page->reserve(all.size());
            for (const Element& element : all) {
                if (element) {
                    page->push_back(element);
                }
            }
            return page;
        }

        /// A service that doesn't count would send its first page for ever.
        bool isEnd(const Page& all) const {
            if (all.empty()) {
                return true;
            }
            if (skip == 0 || first.empty() || !all.front() || all.front()->getInstanceId() != first) {
                return false;
            }
            if (all.size() < static_cast<std::size_t>(pageSize)) {
                return true;
            }
            throw std::runtime_error("the service sent the same page again: it does not heed $skip");
        }

        const Fetch fetch;
        const PageQuery query;
        const int pageSize;
        int skip = 0;
        /// The id of the first instance of the last page.
        utility::string_t first;
        std::optional<pplx::task<std::shared_ptr<Instances>>> ahead;
        std::atomic<bool> isBusy{false};
    };

    std::shared_ptr<Way> m_Way;
};

/// A list that is fetched page by page. Nothing is sent until it is used, and each use fetches it anew. It is a value:
/// what it is told makes another one.
template <class Instances>
class Pages {
public:
    /// What it is made of.
    using Cursor = PageCursor<Instances>;
    using Element = typename Cursor::Element;
    using Page = typename Cursor::Page;

    /// For what `pages` can't say: calls that are made in another way than by a select operation.
    explicit Pages(typename Cursor::Fetch fetch) : m_Fetch(std::move(fetch)) {}

    /// @name The query options
    /// @{
    Pages filter(utility::string_t expression) const { return with(&PageQuery::filter, std::move(expression)); }
    /// A condition that was written with names of properties, of the entity that is listed: see Filters.h.
    template <class Entity>
    Pages filter(const Filter<Entity>& condition) const {
        using Listed = typename std::decay_t<decltype(std::declval<Element>()->getProperties())>::element_type;
        static_assert(std::is_same_v<Entity, Listed>, "the filter is about another entity than the list");
        return filter(condition.text());
    }
    Pages select(utility::string_t names) const { return with(&PageQuery::select, std::move(names)); }
    Pages orderby(utility::string_t expression) const { return with(&PageQuery::orderby, std::move(expression)); }
    Pages filtersettings(utility::string_t settings) const {
        return with(&PageQuery::filtersettings, std::move(settings));
    }
    /// How many instances to ask for at once; 100 unless said otherwise.
    /// @throws std::invalid_argument if `count` is less than 1.
    Pages pageSize(int count) const {
        if (count < 1) {
            throw std::invalid_argument("a page has at least one instance");
        }
        Pages copy = *this;
        copy.m_PageSize = count;
        return copy;
    }
    /// @}

    Cursor cursor() const { return Cursor(m_Fetch, m_Query, m_PageSize); } ///< A way through the list, without waiting.

    /// Where a range-based `for` stands. It gives shared pointers, which stay good when the range is gone.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Element;

        Iterator() = default;
        /// Stands at the first instance, for which it waits.
        explicit Iterator(Cursor cursor) : m_Place(std::make_shared<Place>(std::move(cursor))) { turn(); }

        Element operator*() const { return m_Place->page->at(m_Place->index); }
        /// Waits for the next page when this one is used up. After an exception this is the end.
        Iterator& operator++() {
            if (++m_Place->index == m_Place->page->size()) {
                turn();
            }
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(const Iterator& other) const { return m_Place == other.m_Place; }
        bool operator!=(const Iterator& other) const { return m_Place != other.m_Place; }

    private:
        struct Place {
            explicit Place(Cursor way) : cursor(std::move(way)) {}
            Cursor cursor;
            std::shared_ptr<const Page> page;
            std::size_t index = 0;
        };

        void turn() {
            const auto place = std::exchange(m_Place, nullptr);
            if (isPoolThread()) {
                throw WouldBlockPool();
            }
            place->index = 0;
            do {
                place->page = place->cursor.next().get();
            } while (place->page && place->page->empty());
            m_Place = place->page ? place : nullptr;
        }

        std::shared_ptr<Place> m_Place;
    };

    /// Fetches the first page and waits for it. Waiting, here and at each step that needs another page, throws what the
    /// operation throws, in the call or by its task, and WouldBlockPool inside a continuation.
    Iterator begin() const { return Iterator(cursor()); }
    Iterator end() const { return Iterator(); } ///< After the last instance.

private:
    Pages with(api::TextOption PageQuery::*option, utility::string_t value) const {
        Pages copy = *this;
        copy.m_Query.*option = std::move(value);
        return copy;
    }

    typename Cursor::Fetch m_Fetch;
    PageQuery m_Query;
    int m_PageSize = 100;
};

/// The list that a select operation gives, for example
/// `pages(attachments, &api::AttachmentApi::select_DynamicSchemaAttachment2, project, className, issueId)`.
/// @param path the operation's arguments before its query options.
template <class Api, class Operation, class... Path>
auto pages(const Api& api, Operation operation, const Path&... path) {
    using Text = const api::TextOption&;
    constexpr bool isSelect =
        std::is_invocable_v<Operation, const Api&, const Path&..., Text, Text, Text, Text, int, int>;
    static_assert(isSelect, "pages takes a select operation and its arguments before the filter");
    if constexpr (isSelect) {
        using Task = std::invoke_result_t<Operation, const Api&, const Path&..., Text, Text, Text, Text, int, int>;
        using Instances = typename Task::result_type::element_type;
        return Pages<Instances>([api, operation, path = std::make_tuple(utility::string_t(path)...)](
                                    const PageQuery& query, int skip, int top) {
            return std::apply(
                [&](const auto&... texts) {
                    return (api.*operation)(texts..., query.filter, query.select, query.orderby, query.filtersettings,
                                            skip, top);
                },
                path);
        });
    }
}

namespace detail {

template <class Result>
struct IsTask : std::false_type {};
template <class Result>
struct IsTask<pplx::task<Result>> : std::true_type {};

/// Gives page after page to a function, without waiting.
template <class Instances, class Use>
class PageWalk : public std::enable_shared_from_this<PageWalk<Instances, Use>> {
public:
    PageWalk(const Pages<Instances>& pages, Use use) : m_Cursor(pages.cursor()), m_Use(std::move(use)) {}

    pplx::task<void> start() {
        const auto done = observed(pplx::task<void>(m_Done));
        step();
        return done;
    }

private:
    using Page = typename Pages<Instances>::Page;

    void step() {
        m_Cursor.next().then([walk = this->shared_from_this()](const pplx::task<std::shared_ptr<const Page>>& arrived) {
            walk->orFail([&] {
                const auto page = arrived.get();
                page ? walk->use(page) : walk->goOn(false);
            });
        });
    }

    void use(const std::shared_ptr<const Page>& page) {
        using Result = std::invoke_result_t<Use&, const Page&>;
        if constexpr (IsTask<Result>::value) {
            m_Use(*page).then([walk = this->shared_from_this(), page](const Result& used) {
                walk->orFail([&] {
                    if constexpr (std::is_void_v<typename Result::result_type>) {
                        used.get();
                        walk->goOn(true);
                    } else {
                        walk->goOn(used.get());
                    }
                });
            });
        } else if constexpr (std::is_void_v<Result>) {
            m_Use(*page);
            goOn(true);
        } else {
            goOn(m_Use(*page));
        }
    }

    void goOn(bool wantsMore) { wantsMore ? step() : static_cast<void>(m_Done.set()); }

    template <class Work>
    void orFail(Work work) {
        try {
            work();
        } catch (...) {
            m_Done.set_exception(std::current_exception());
        }
    }

    PageCursor<Instances> m_Cursor;
    Use m_Use;
    pplx::task_completion_event<void> m_Done;
};

} // namespace detail

/// Calls `use` with each page, one after the other, in the task library's pool, while the next one is fetched. Nothing
/// waits, so this is for programs that must not, and for continuations.
/// @param use takes a `const std::vector<std::shared_ptr<...>>&`. It returns nothing, or whether to go on, or a task of
///     either, before whose end it is not called again.
/// @return done when `use` has had all pages, or wanted no more. It fails as the operation does, or as `use` does. It
///     may be dropped.
template <class Instances, class Use>
pplx::task<void> forEachPage(const Pages<Instances>& pages, Use use) {
    return std::make_shared<detail::PageWalk<Instances, Use>>(pages, std::move(use))->start();
}

/// All instances of the list. The task fails as the operation does, and may be dropped.
template <class Instances>
pplx::task<typename Pages<Instances>::Page> all(const Pages<Instances>& pages) {
    using Page = typename Pages<Instances>::Page;
    const auto elements = std::make_shared<Page>();
    return observed(forEachPage(pages, [elements](const Page& page) {
                        elements->insert(elements->end(), page.begin(), page.end());
                    }).then([elements] { return std::move(*elements); }));
}

} // namespace VarnelAPI::Forms::kit
