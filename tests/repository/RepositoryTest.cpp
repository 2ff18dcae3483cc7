#include "Support.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <set>
#include <tuple>

#include <zlib.h>

namespace repository_test {
namespace {

TEST_F(RepositoryTest, InstanceLivesFromInsertToDelete) {
    const Json given = {
        {"_Subject", "Grün 雪"}, {"Zulu", 1}, {"Alpha", {{"k", {true, nullptr}}}}, {"_DueDate", nullptr}};
    const Answer inserted = m_client.send("POST", "DynamicSchema/Issue", Client::envelope(given));
    EXPECT_EQ(inserted.status, 201);
    const Json content = inserted.json()["changedInstance"]["instanceAfterChange"];
    EXPECT_EQ(inserted.json()["changedInstance"]["change"], "Created");
    EXPECT_EQ(content["schemaName"], "DynamicSchema");
    EXPECT_EQ(content["className"], "Issue");
    // The order given is kept, and a null is no value.
    EXPECT_EQ(content["properties"].dump(), R"({"_Subject":"Grün 雪","Zulu":1,"Alpha":{"k":[true,null]}})");

    const std::string id = content["instanceId"];
    std::string form = id;
    std::replace_if(
        form.begin(), form.end(), [](char c) { return std::strchr("0123456789abcdef", c) != nullptr; }, 'x');
    EXPECT_EQ(form, "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx");
    EXPECT_EQ(id.at(14), '4');
    EXPECT_NE(std::strchr("89ab", id.at(19)), nullptr) << id;
    EXPECT_EQ(m_client.get("DynamicSchema/Issue/" + id + "/"), (Json{{"instance", content}}));
    EXPECT_EQ(m_client.get("DynamicSchema/Issue/" + id), (Json{{"instances", {content}}}));

    const std::string update = Client::envelope({{"Zulu", nullptr}, {"Alpha", 2.0}, {"New", "x"}}, content["eTag"]);
    const Answer updated = m_client.send("POST", "DynamicSchema/Issue/" + id + "/", update);
    EXPECT_EQ(updated.status, 200);
    const Json after = updated.json()["changedInstance"]["instanceAfterChange"];
    EXPECT_EQ(updated.json()["changedInstance"]["change"], "Modified");
    EXPECT_EQ(after["properties"].dump(), R"({"_Subject":"Grün 雪","Alpha":2.0,"New":"x"})");
    EXPECT_NE(after["eTag"], content["eTag"]);

    const Answer stale = m_client.send("POST", "DynamicSchema/Issue/" + id + "/", update);
    EXPECT_EQ(stale.status, 409);
    EXPECT_EQ(m_client.get("DynamicSchema/Issue/" + id + "/")["instance"], after);

    EXPECT_EQ(m_client.send("DELETE", "DynamicSchema/Issue/" + id + "/").status, 204);
    EXPECT_EQ(m_client.send("DELETE", "DynamicSchema/Issue/" + id + "/").status, 404);
    EXPECT_EQ(m_client.get("DynamicSchema/Issue/" + id), (Json{{"instances", Json::array()}}));
}

TEST_F(RepositoryTest, NoBodyIsAnInstanceWithoutProperties) {
    for (const char* body : {"", "null", R"({"instance":{}})", R"({"instance":{"properties":null,"eTag":null}})"}) {
        const Answer answer = m_client.send("POST", "DynamicSchema/BaseClass", body);
        EXPECT_EQ(answer.status, 201) << body;
        EXPECT_EQ(answer.json()["changedInstance"]["instanceAfterChange"]["properties"], Json::object());
    }
}

TEST_F(RepositoryTest, BaseClassReachesWhatDerivesFromItInItsSchemaAndLocation) {
    const std::string base = m_client.insertId("DynamicSchema/BaseClass", {{"n", 1}});
    const std::string issue = m_client.insertId("DynamicSchema/Issue", {{"n", 2}});
    m_client.insertId("DynamicSchema/Snag", {{"n", 3}});
    m_client.insertId("DynamicSchema/Issue", {{"n", 4}});
    const std::string comment = m_client.insertId("DynamicSchema/_Comment", {{"n", 5}});
    m_client.insertId("Other/Issue", {{"n", 6}});
    m_client.insertId("/sv1.2/Repositories/Varnel.Forms--else%20where/DynamicSchema/Issue", {{"n", 7}});

    EXPECT_EQ(m_client.listed("DynamicSchema/BaseClass!poly", "n"), Json({1, 2, 3, 4}));
    EXPECT_EQ(m_client.listed("DynamicSchema/BaseClass", "n"), Json({1}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Issue!poly", "n"), Json({2, 4}));
    EXPECT_EQ(m_client.listed("Other/BaseClass!poly", "n"), Json({6}));
    EXPECT_EQ(m_client.listed("/sv1.2/Repositories/Varnel.Forms--else%20where/DynamicSchema/BaseClass!poly", "n"),
              Json({7}));

    // In a path, unlike in a query, '+' is itself.
    EXPECT_EQ(m_client.list("/sv1.2/Repositories/Varnel.Forms--else+where/DynamicSchema/Issue"), Json::array());

    const auto counts = [&](const std::string& path) {
        std::string text;
        for (const Json& row : m_client.list(path)) {
            text += row["properties"].dump();
        }
        return text;
    };
    EXPECT_EQ(counts("DynamicSchema/BaseClass/$count"),
              R"({"ECSchemaName":"DynamicSchema","ECClassName":"BaseClass","count":1})"
              R"({"ECSchemaName":"DynamicSchema","ECClassName":"Issue","count":2})"
              R"({"ECSchemaName":"DynamicSchema","ECClassName":"Snag","count":1})");
    EXPECT_EQ(counts("DynamicSchema/File/$count"),
              R"({"ECSchemaName":"DynamicSchema","ECClassName":"File","count":0})");

    EXPECT_EQ(m_client.get("DynamicSchema/BaseClass/" + issue + "/")["instance"]["className"], "Issue");
    EXPECT_EQ(m_client.send("GET", "DynamicSchema/Issue/" + base + "/").status, 404);
    EXPECT_EQ(m_client.send("GET", "DynamicSchema/BaseClass/" + comment + "/").status, 404);
    const std::string path = "DynamicSchema/BaseClass/" + issue + "/";
    EXPECT_EQ(m_client.send("POST", path, Client::envelope({{"n", 20}})).status, 200);
    EXPECT_EQ(m_client.listed("DynamicSchema/Issue", "n"), Json({20, 4}));
    EXPECT_EQ(m_client.send("DELETE", path).status, 204);
    EXPECT_EQ(m_client.listed("DynamicSchema/Issue", "n"), Json({4}));
}

TEST_F(RepositoryTest, RecordsBelongToTheirInstance) {
    const std::string issue = m_client.insertId("DynamicSchema/Issue");
    const std::string other = m_client.insertId("DynamicSchema/Issue");
    const std::string first = m_client.insertId("DynamicSchema/Issue/" + issue + "/Attachment", {{"Name", "a"}});
    m_client.insertId("DynamicSchema/BaseClass/" + issue + "/Attachment", {{"Name", "b"}});
    m_client.insertId("DynamicSchema/Issue/" + other + "/Attachment", {{"Name", "c"}});
    m_client.insertId("DynamicSchema/Attachment/" + first + "/_Comment", {{"Text", "on a"}});
    const std::vector<std::string> kinds{"File", "_Comment", "_ExternalFile"};
    for (const std::string& kind : kinds) {
        m_client.insertId("DynamicSchema/Issue/" + issue + "/" + kind);
        EXPECT_EQ(m_client.list("DynamicSchema/Issue/" + issue + "/" + kind).size(), 1U) << kind;
    }

    EXPECT_EQ(m_client.listed("DynamicSchema/Issue/" + issue + "/Attachment", "Name"), Json({"a", "b"}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Issue/" + issue + "/Attachment?$filter=Name%20eq%20'b'", "Name"),
              Json({"b"}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment", "Name"), Json({"a", "b", "c"}));
    // An id without a final slash: that record, else the records of that instance.
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment/" + first, "Name"), Json({"a"}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment/" + issue, "Name"), Json({"a", "b"}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment/" + issue + "?$skip=1", "Name"), Json({"b"}));
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment/" + noId, "Name"), Json::array());

    EXPECT_EQ(m_client.send("DELETE", "DynamicSchema/Issue/" + issue + "/").status, 204);
    EXPECT_EQ(m_client.listed("DynamicSchema/Attachment", "Name"), Json({"c"}));
    for (const std::string& kind : kinds) {
        EXPECT_EQ(m_client.list("DynamicSchema/" + kind), Json::array()) << kind;
    }
    for (const std::string& path :
         {"DynamicSchema/Issue/" + issue + "/Attachment", "DynamicSchema/Issue/" + other + "/Nothing"}) {
        EXPECT_EQ(m_client.send("GET", path).status, 404) << path;
        EXPECT_EQ(m_client.send("POST", path, Client::envelope(Json::object())).status, 404) << path;
    }
}

TEST_F(RepositoryTest, RelatedInstancesAreListedAtBothEnds) {
    const std::string issue = m_client.insertId("DynamicSchema/Issue", {{"_Subject", "s"}});
    const std::string below = "DynamicSchema/Issue/" + issue + "/FormData-";
    const Json form = m_client.insert(below + "forward-Forms_EC_Mapping.Form", {{"Name", "f"}});
    EXPECT_EQ(form["schemaName"], "Forms_EC_Mapping");
    EXPECT_EQ(form["className"], "Form");

    const Json related = m_client.get("DynamicSchema/Issue/" + issue + "/")["instance"]["relationshipInstances"];
    ASSERT_EQ(related.size(), 1U);
    EXPECT_EQ(related[0]["schemaName"], "DynamicSchema");
    EXPECT_EQ(related[0]["className"], "FormData");
    EXPECT_EQ(related[0]["direction"], "forward");
    EXPECT_EQ(related[0]["relatedInstance"], form);
    EXPECT_FALSE(related[0]["instanceId"].get<std::string>().empty());
    const Json list = m_client.list("DynamicSchema/BaseClass!poly?$select=nothing");
    EXPECT_EQ(list[0]["relationshipInstances"], related);
    EXPECT_EQ(list[0]["properties"], Json::object());

    // Later ones follow, whatever their direction.
    const std::string second = m_client.insertId(below + "backward-Forms_EC_Mapping.Form", {{"Name", "g"}});
    m_client.insertId(below + "forward-Forms_EC_Mapping.Form", {{"Name", "h"}});
    std::string seen;
    const Json all = m_client.get("DynamicSchema/Issue/" + issue + "/")["instance"]["relationshipInstances"];
    for (const Json& one : all) {
        seen += one["direction"].get<std::string>() + one["relatedInstance"]["properties"]["Name"].get<std::string>();
    }
    EXPECT_EQ(seen, "forwardfbackwardgforwardh");
    const Json source = m_client.get("Forms_EC_Mapping/Form/" + second + "/")["instance"]["relationshipInstances"][0];
    EXPECT_EQ(source["direction"], "forward");
    EXPECT_EQ(source["relatedInstance"]["instanceId"], issue);

    const std::string formPath = "Forms_EC_Mapping/Form/" + form["instanceId"].get<std::string>() + "/";
    const Json back = m_client.get(formPath)["instance"]["relationshipInstances"][0];
    EXPECT_EQ(back["direction"], "backward");
    EXPECT_EQ(back["relatedInstance"]["instanceId"], issue);

    EXPECT_EQ(m_client.send("DELETE", "DynamicSchema/Issue/" + issue + "/").status, 204);
    EXPECT_FALSE(m_client.get(formPath)["instance"].contains("relationshipInstances"));

    // Nothing is made when the instance is missing or the relationship is not one.
    const std::string some = m_client.insertId("DynamicSchema/Issue");
    for (const auto& [path, status] : std::vector<std::pair<std::string, int>>{
             {below + "forward-Forms_EC_Mapping.Form", 404},
             {"DynamicSchema/Issue/" + some + "/FormData-sideways-Forms_EC_Mapping.Form", 400},
             {"DynamicSchema/Issue/" + some + "/FormData-forward-Form", 400},
             {"DynamicSchema//" + some + "/FormData-forward-Forms_EC_Mapping.Form", 404}}) {
        EXPECT_EQ(m_client.send("POST", path, Client::envelope({{"Name", "no"}})).status, status) << path;
    }
    EXPECT_EQ(m_client.listed("Forms_EC_Mapping/Form", "Name"), Json({"f", "g", "h"}));
}

TEST_F(RepositoryTest, EveryChangeLeavesAnAuditRecordThatOutlivesTheInstance) {
    const std::string path =
        "DynamicSchema/Issue/" + m_client.insertId("DynamicSchema/Issue", {{"a", "x"}, {"n", 1.5}});
    m_client.send("POST", path + "/", Client::envelope({{"a", "y"}, {"n", nullptr}, {"b", {{"k", true}}}}));
    m_client.insertId(path + "/_Comment", {{"Text", "no audit of records"}});
    m_client.send("DELETE", path + "/");

    std::string history;
    for (const Json& record : m_client.list(path + "/AuditRecord")) {
        const Json& properties = record["properties"];
        history += properties["Action"].get<std::string>() + properties["Values"].dump() + "\n";
        EXPECT_EQ(properties["RecordDate"].get<std::string>().size(), 24U);
        EXPECT_EQ(properties["RecordDate"].get<std::string>().substr(10, 1), "T");
        EXPECT_EQ(properties["RecordBy"].get<std::string>() + properties["RecordById"].get<std::string>(),
                  "Local userlocal");
    }
    EXPECT_EQ(
        history,
        R"(Created[{"Property":"a","OldValue":"","NewValue":"x"},{"Property":"n","OldValue":"","NewValue":"1.5"}])"
        "\n"
        R"(Modified[{"Property":"a","OldValue":"x","NewValue":"y"},{"Property":"n","OldValue":"1.5","NewValue":""},{"Property":"b","OldValue":"","NewValue":"{\"k\":true}"}])"
        "\n"
        R"(Deleted[{"Property":"a","OldValue":"y","NewValue":""},{"Property":"b","OldValue":"{\"k\":true}","NewValue":""}])"
        "\n");
    EXPECT_EQ(m_client.list("DynamicSchema/AuditRecord").size(), 3U);
}

TEST_F(RepositoryTest, FilesAreKeptByteForByte) {
    const Json inserted = m_client.insert("Lists/ListGroup", {{"Name", "g"}});
    const std::string path = "Lists/ListGroup/" + inserted["instanceId"].get<std::string>() + "/$file";
    EXPECT_EQ(m_client.send("GET", path).status, 404);

    std::string bytes("\0\r\n--x\r\n\xFF", 9);
    bytes.resize(3'000'000, '\xA5');
    std::string lastTag = inserted["eTag"];
    for (const auto& [type, content] : std::vector<std::pair<std::string, std::string>>{
             {"multipart/form-data; boundary=x", bytes},
             {"application/x-www-form-urlencoded", std::string(20'000, 'a')},
             {"application/json", "true"},
             {"text/plain", ""}}) {
        const Answer put = m_client.send("PUT", path, content, {{"Content-Type", type}});
        EXPECT_EQ(put.status, 200) << type;
        const Json changed = put.json()["changedInstance"];
        EXPECT_EQ(changed["change"], "Modified");
        EXPECT_NE(changed["instanceAfterChange"]["eTag"], lastTag);
        lastTag = changed["instanceAfterChange"]["eTag"];
        const Answer got = m_client.send("GET", path, "", {{"Range", "bytes=0-1"}});
        EXPECT_EQ(got.status, 200) << type;
        EXPECT_EQ(got.header("Content-Type"), "application/octet-stream");
        EXPECT_TRUE(got.body == content) << type;
    }
    const std::string gzip("\x1f\x8b\x08\0\0\0\0\0\0\x03\x4b\x4c\x4a\x06\0\xc2\x41\x24\x35\x03\0\0\0", 23);
    const std::string zlib("x\x9cKLJ\x06\0\x02M\x01'", 11);
    for (const auto& [coding, content] : std::vector<std::pair<std::string, std::string>>{
             {"gzip", gzip}, {"x-gzip", gzip}, {"deflate", zlib}, {"identity", "abc"}}) {
        m_client.send("PUT", path, "");
        EXPECT_EQ(m_client.send("PUT", path, content, {{"Content-Encoding", coding}}).status, 200);
        EXPECT_EQ(m_client.send("GET", path).body, "abc") << coding;
    }
    EXPECT_EQ(m_client.send("PUT", "Lists/ListGroup/" + noId + "/$file", "x").status, 404);

    // A file goes with its instance: the next instance, which may take its place in the store, has none.
    const std::string gone = "DynamicSchema/Attachment/" + m_client.insertId("DynamicSchema/Attachment") + "/";
    EXPECT_EQ(m_client.send("PUT", gone + "$file", "x").status, 200);
    EXPECT_EQ(m_client.send("DELETE", gone).status, 204);
    const std::string next = "DynamicSchema/Attachment/" + m_client.insertId("DynamicSchema/Attachment") + "/";
    EXPECT_EQ(m_client.send("GET", next + "$file").status, 404);
}

TEST_F(RepositoryTest, GeneratedPdfIsAWellFormedDocumentOfItsProperties) {
    const std::string id =
        m_client.insertId("FormPDF/GeneratedPDF", {{"FileName", "a (1)\\é雪.pdf"}, {"Long", std::string(9000, 'w')}});
    const std::string pdf = m_client.send("GET", "FormPDF/GeneratedPDF/" + id + "/$file").body;
    EXPECT_EQ(pdf.substr(0, 9), "%PDF-1.4\n");
    EXPECT_EQ(pdf.substr(pdf.size() - 6), "%%EOF\n");
    EXPECT_NE(pdf.find("(FileName: a \\(1\\)\\\\\xE9?.pdf) Tj"), std::string::npos);
    EXPECT_NE(pdf.find("(...) Tj"), std::string::npos);

    // Every entry of the cross-reference table leads to its object, and the stream has the length it claims.
    const std::size_t table = std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10));
    ASSERT_EQ(pdf.substr(table, 9), "xref\n0 6\n");
    for (std::size_t object = 1; object < 6; ++object) {
        const std::size_t offset = std::stoul(pdf.substr(table + 9 + 20 * object, 10));
        EXPECT_EQ(pdf.substr(offset, 7), std::to_string(object) + " 0 obj");
    }
    const std::size_t length = std::stoul(pdf.substr(pdf.find("/Length ") + 8));
    const std::size_t stream = pdf.find("stream\n") + 7;
    EXPECT_EQ(pdf.substr(stream + length, 10), "\nendstream");
}

class QueryTest : public RepositoryTest {
protected:
    QueryTest() {
        m_client.insertId("S/C", {{"id", 1}, {"t", "it's"}, {"n", 2}, {"b", true}});
        m_client.insertId("S/C", {{"id", 2}, {"t", "Z"}, {"n", 10}});
        m_client.insertId("S/C", {{"id", 3}, {"t", "a"}, {"n", 2.5}, {"b", false}});
        m_client.insertId("S/C", {{"id", 4}, {"n", "text"}});
    }
    Json ids(const std::string& option, const std::string& value) {
        return m_client.listed("S/C?" + option + "=" + httplib::detail::encode_query_param(value), "id");
    }
};

TEST_F(QueryTest, Filters) {
    std::string sideBySide = "(id eq 4)";
    std::string stairs;
    for (int i = 1; i < 70; ++i) {
        sideBySide += " or (id eq 4)";
        stairs += i > 64 ? "" : i % 2 == 0 ? "id eq 9 or (" : "id lt 9 and (";
    }
    stairs += "id eq 4" + std::string(64, ')');
    // As much of the database's parser as can be asked for: every part is as large as the one beside it.
    std::string bushy = "id eq 4";
    for (int i = 0; i < 5; ++i) {
        bushy = "(" + bushy + (i % 2 == 0 ? ") or (" : ") and (") + bushy + ")";
    }
    for (const auto& [filter, expected] : std::vector<std::pair<std::string, Json>>{
             {"", {1, 2, 3, 4}},
             {"t eq 'it''s'", {1}},
             {"t ne 'Z'", {1, 3, 4}},
             {"n gt 2", {2, 3}},
             {"n ge 2.5", {2, 3}},
             {"n lt 25e-1", {1}},
             {"n gt 1E+0 and n lt 0.3e+1", {1, 3}},
             {"n le 2.0", {1}},
             {"n eq -2", Json::array()},
             {"n eq '10'", Json::array()},
             {"t gt 'Z'", {1, 3}},
             {"b eq true", {1}},
             {"b ne true", {2, 3, 4}},
             {"b eq null", {2, 4}},
             {"b ne null", {1, 3}},
             {"className eq 'C' and n eq 10", {2}},
             {"className eq null or eTag eq null", Json::array()},
             {"schemaName ne null and instanceId ne null", {1, 2, 3, 4}},
             {"id eq 1 or id eq 2 and n eq 10", {1, 2}},
             {"(id eq 1 or id eq 2) and n eq 10", {2}},
             {"t eq 'a=b' or id eq 4", {4}},
             {"not b eq true and id ne 4", {2, 3}},
             {"not (b eq true or id gt 2)", {2}},
             {"not not (not (id lt 3) and not t eq 'a')", {4}},
             {"contains(t,'''')", {1}},
             {"contains(t, 't''s') or endswith(t,'Z')", {1, 2}},
             {"not contains(t,'s')", {2, 3, 4}},
             {"contains(n,'ex') and not startswith(n,'ex')", {4}},
             {"startswith(t,'it') or startswith(t,'z')", {1}},
             {"endswith(t,'''s')", {1}},
             {"endswith(t,'it')", Json::array()},
             {"endswith(t,'xxit''s') or contains(n,'1')", Json::array()},
             {"contains(t,'') and startswith(t,'') and endswith(t,'')", {1, 2, 3}},
             {"endswith(className,'C') and startswith(schemaName,'S')", {1, 2, 3, 4}},
             {"id in (4, 1)", {1, 4}},
             {"not (t in ('a','Z',null))", {1}},
             {"b in (true) or className in ('D')", {1}},
             {"n ge 2.5 and n le 9999999999999999999", {2, 3}},
             {std::string(64, '(') + "id eq 4" + std::string(64, ')'), {4}},
             {stairs, {4}},
             {bushy, {4}},
             {sideBySide, {4}}}) {
        EXPECT_EQ(ids("$filter", filter), expected) << filter;
    }
    EXPECT_EQ(m_client.listed("S/C?$filter=t+eq+'%61=b'+or+n+eq+%27te%78t%27", "id"), Json({4}));

    m_client.insertId("S/D", {{"id", 1}, {"d", "2026-01-31T23:59:59.5Z"}, {"u", "Grün"}});
    m_client.insertId("S/D", {{"id", 2}, {"d", "2026-02-01T01:00:00+01:00"}, {"u", "now\nline"}});
    m_client.insertId("S/D", {{"id", 3}, {"d", "now"}, {"not", 5}, {"contains", 6}});
    m_client.insertId("S/D", {{"id", 4}, {"d", {1}}, {"u", ""}});
    for (const auto& [filter, expected] :
         std::vector<std::pair<std::string, Json>>{{"d lt 2026-02-01T00:00:00Z", {1}},
                                                   {"d eq 2026-02-01", {2}},
                                                   {"d ne 2026-02-01T00:00Z", {1, 3, 4}},
                                                   {"d ge 2026-01-31T22:59:59.5-01:00 and d lt 9999-12-31", {1, 2}},
                                                   {"not d in (2026-02-01, 2000-02-29)", {1, 3, 4}},
                                                   {"d eq '2026-02-01T00:00:00Z'", Json::array()},
                                                   {"d eq null or u eq ''", {4}},
                                                   {"d ne null", {1, 2, 3, 4}},
                                                   {"endswith(u,'ün') or endswith(u,'\nline')", {1, 2}},
                                                   {"not eq 5 and contains gt 1", {3}}}) {
        EXPECT_EQ(m_client.listed("S/D?$filter=" + httplib::detail::encode_query_param(filter), "id"), expected)
            << filter;
    }

    // A property comes before the part of the identity that has its name.
    m_client.insertId("S/C", {{"id", 5}, {"className", "X"}});
    EXPECT_EQ(ids("$filter", "className eq 'X'"), Json({5}));
    EXPECT_EQ(ids("$filter", "className ne 'C'"), Json({5}));
    EXPECT_EQ(ids("$orderby", "className desc,id"), Json({5, 1, 2, 3, 4}));
}

TEST_F(QueryTest, OrdersAndPages) {
    for (const auto& [order, expected] : std::vector<std::pair<std::string, Json>>{{"", {1, 2, 3, 4}},
                                                                                   {"n", {1, 3, 2, 4}},
                                                                                   {"n desc", {4, 2, 3, 1}},
                                                                                   {"t", {2, 3, 1, 4}},
                                                                                   {"t desc", {1, 3, 2, 4}},
                                                                                   {"b asc,  n desc", {3, 1, 4, 2}},
                                                                                   {"none, id desc", {4, 3, 2, 1}}}) {
        EXPECT_EQ(ids("$orderby", order), expected) << order;
    }
    for (const auto& [page, expected] :
         std::vector<std::pair<std::string, Json>>{{"$top=2", {1, 2}},
                                                   {"$skip=3&$top=5", {4}},
                                                   {"$skip=9", Json::array()},
                                                   {"$top=0", Json::array()},
                                                   {"$orderby=id+desc&$skip=1&$top=2", {3, 2}},
                                                   {"$filter=n+gt+2&$skip=9223372036854775807&$top=1", Json::array()},
                                                   {"api.filtersettings=x&definitionFormat=xml&other=1&$top=1", {1}},
                                                   {"&x&$top=1&definitionFormat=json&$orderby=&$filter=", {1}}}) {
        EXPECT_EQ(m_client.listed("S/C?" + page, "id"), expected) << page;
    }
    const Json selected = m_client.list("S/C?$top=1&$select=b%20,%20t")[0];
    EXPECT_EQ(selected["properties"].dump(), R"({"t":"it's","b":true})");
    EXPECT_FALSE(selected["eTag"].get<std::string>().empty());
    EXPECT_EQ(m_client.list("S/C?$top=1&$select=*")[0]["properties"].size(), 4U);
    const std::string path = "S/C/" + selected["instanceId"].get<std::string>() + "/?$select=n";
    EXPECT_EQ(m_client.get(path)["instance"]["properties"].dump(), R"({"n":2})");
    std::string classes; // more than the database can merge
    for (int i = 0; i < 501; ++i) {
        classes += std::string(i == 0 ? "" : ",") + R"({"location":"here","schemaName":"S","base":"C","className":"C)" +
                   std::to_string(i) + "\"}";
    }
    m_server.seedText("{\"classes\":[" + classes + "]}");
    EXPECT_EQ(m_client.listed("S/C!poly", "id"), Json({1, 2, 3, 4}));
    m_client.insertId("S/C", {{"id", 5}, {"n", true}});
    EXPECT_EQ(ids("$orderby", "n"), Json({5, 1, 3, 2, 4}));
}

TEST_F(RepositoryTest, WhatCantBeServedIsAnErrorPayload) {
    const std::string instance = "S/C/" + m_client.insertId("S/C") + "/";
    const std::string deep =
        R"({"instance":{"properties":{"p":)" + std::string(100000, '[') + std::string(100000, ']') + "}}}";
    const auto repeated = [](int count, const std::string& text) {
        std::string result;
        for (int i = 0; i < count; ++i) {
            result += text;
        }
        return result;
    };
    const auto nested = [](std::size_t levels) {
        return R"({"instance":{"properties":{"p":)" + std::string(levels - 3, '[') + std::string(levels - 3, ']') +
               "}}}";
    };
    EXPECT_EQ(m_client.send("POST", "S/C", nested(100)).status, 201);
    const Answer head = m_client.send("HEAD", "S/C");
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.header("Content-Length"), std::to_string(m_client.send("GET", "S/C").body.size()));
    EXPECT_EQ(m_client.send("GET", "S/C?x=" + std::string(10000, 'x')).status, 414);
    EXPECT_EQ(m_client.send("GET", "S/C?$orderby=a" + repeated(31, ",a")).status, 200);
    struct Case {
        std::string method, path, body;
        int status;
        std::string inDescription;
    };
    for (const Case& c :
         std::vector<Case>{{"POST", "S/C", "{", 400, "not JSON"},
                           {"POST", "S/C", "{\"instance\":{\"properties\":{\"a\":\"\xFF\"}}}", 400, "not JSON"},
                           {"POST", "S/C", R"({"instance":{"properties":{"a":1e400}}})", 400, "not JSON"},
                           {"POST", "S/C", deep, 400, "nested"},
                           {"POST", "S/C", nested(101), 400, "nested"},
                           {"POST", "S/C", "[]", 400, "envelope"},
                           {"POST", "S/C", "{}", 400, "envelope"},
                           {"POST", "S/C", R"({"instance":{"properties":[]}})", 400, "properties"},
                           {"POST", "S/C", R"({"instance":{"eTag":1}})", 400, "eTag"},
                           {"POST", "S/C?$top=1", "null", 400, "$top"},
                           {"GET", "S/C?$skip=-1", "", 400, "$skip"},
                           {"GET", "S/C?$top=1x", "", 400, "$top"},
                           {"GET", "S/C?$top=", "", 400, "$top"},
                           {"GET", "S/C?$top=99999999999999999999", "", 400, "$top"},
                           {"GET", "S/C?$expand=x", "", 400, "$expand"},
                           {"GET", "S/C?$top=1&$top=2", "", 400, "twice"},
                           {"GET", "S/C?definitionFormat=yaml", "", 400, "yaml"},
                           {"GET", "S/C?$orderby=a+down", "", 400, "down"},
                           {"GET", "S/C?$select=a,,b", "", 400, "$select"},
                           {"GET", "S/C?$filter=contains(a,1)", "", 400, "a text in single quotes"},
                           {"GET", "S/C?$filter=a+eq+'x", "", 400, "not closed"},
                           {"GET", "S/C?$filter=a+eq+1+b", "", 400, "at position 7, found \"b\""},
                           {"GET", "S/C?$filter=a+eq+yes", "", 400, "at position 5, found \"yes\""},
                           {"GET", "S/C?$filter=+a+eq+'x", "", 400, "starts at position 6"},
                           {"GET", "S/C?$filter=a+gt+true", "", 400, "'gt' needs a number"},
                           {"GET", "S/C?$filter=a+is+1", "", 400, "le or in"},
                           {"GET", "S/C?$filter=a+'eq'+1", "", 400, "le or in"},
                           {"GET", "S/C?$filter=(a+eq+1", "", 400, "')'"},
                           {"GET", "S/C?$filter=contains(a+'x')", "", 400, "','"},
                           {"GET", "S/C?$orderby=a,,b", "", 400, "$orderby"},
                           {"GET", "S/C?$orderby=a+asc+b", "", 400, "a asc b"},
                           {"GET", "S/C?$filter=a+in+()", "", 400, "\")\""},
                           {"GET", "S/C?$filter=a+in+(1,2", "", 400, "the end"},
                           {"GET", "S/C?$filter=endswith(a,'x'+b", "", 400, "\"b\""},
                           {"GET", "S/C?$filter=not", "", 400, "a property name"},
                           {"GET", "S/C?$filter=a+lt+2026-02-29", "", 400, "\"2026-02-29\""},
                           {"GET", "S/C?$filter=a+lt+1900-02-29", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-13-01", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-00-01", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-00", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T23:60Z", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T23.59Z", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T23:59:59.Z", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T23:59-24:00", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T24:00Z", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T10:00Zulu", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+lt+2026-02-01T10:00:60Z", "", 400, "a date"},
                           {"GET", "S/C?$filter=a+eq+'%00'", "", 400, "control"},
                           {"GET", "S/C?$filter=" + std::string(65, '(') + "a+eq+1", "", 400, "nested"},
                           {"GET", "S/C?$orderby=a" + repeated(32, ",a"), "", 400, "32"},
                           {"GET", "S/C?$filter=a+eq", "", 400, "the end"},
                           {"GET", "S/C?$filter=a+lt+null", "", 400, "null"},
                           {"GET", "S/C?$filter=" + std::string(5000, '('), "", 400, "nested"},
                           {"GET", instance + "?$top=1", "", 400, "$top"},
                           {"GET", "S/C%ZZ", "", 400, "%"},
                           {"GET", "S/C%FF", "", 400, "UTF-8"},
                           {"GET", "S/C%00", "", 400, "control"},
                           {"GET", "S/C%7F", "", 400, "control"},
                           {"GET", "S%2FC/D", "", 400, "S/C"},
                           {"GET", "S%2fC/D", "", 400, "S/C"},
                           {"GET", "S/C!all", "", 400, "C!all"},
                           {"GET", instance + "a/b", "", 404, "path"},
                           {"GET", "S/C//", "", 404, "path"},
                           {"GET", "S", "", 404, "path"},
                           {"GET", "/elsewhere", "", 404, "/sv1.2"},
                           {"GET", "S/C/" + noId + "/", "", 404, noId},
                           {"POST", "S/C/" + noId + "/", "null", 404, noId},
                           {"POST", instance, R"({"instance":{"eTag":"old"}})", 409, "old"}}) {
        const Answer answer = m_client.send(c.method, c.path, c.body);
        const std::string what = c.method + " " + c.path.substr(0, 80);
        ASSERT_EQ(answer.status, c.status) << what << answer.body;
        EXPECT_EQ(answer.header("Content-Type"), "application/json") << what;
        const Json payload = answer.json();
        EXPECT_EQ(payload.size(), 3U);
        EXPECT_EQ(payload["errorId"], c.status == 400 ? "BadRequest" : c.status == 404 ? "NotFound" : "Conflict");
        EXPECT_FALSE(payload["errorMessage"].get<std::string>().empty());
        EXPECT_NE(payload["errorDescription"].get<std::string>().find(c.inDescription), std::string::npos)
            << answer.body;
    }
    for (const auto& [method, path, allowed] : std::vector<std::tuple<std::string, std::string, std::string>>{
             {"PUT", "S/C", "GET, HEAD, POST"},
             {"DELETE", "S/C", "GET, HEAD, POST"},
             {"PATCH", instance, "GET, HEAD, POST, DELETE"},
             {"OPTIONS", instance + "$file", "GET, HEAD, PUT"},
             {"POST", "S/C!poly", "GET, HEAD"},
             {"POST", "S/C/$count", "GET, HEAD"},
             {"GET", instance + "R-forward-S.C", "POST"}}) {
        const Answer answer = m_client.send(method, path);
        EXPECT_EQ(answer.status, 405) << method << " " << path;
        EXPECT_EQ(answer.header("Allow"), allowed) << method << " " << path;
        EXPECT_EQ(answer.json()["errorId"], "MethodNotAllowed");
    }
}

TEST(RepositoryServerTest, RefusesTooLargeBodiesAndGoesOn) {
    ServerOptions options;
    options.maxBodyBytes = 1000;
    const Server server(options);
    Client client(server);
    const std::string path = "S/C/" + client.insertId("S/C") + "/$file";
    EXPECT_EQ(client.send("PUT", path, std::string(1000, 'x')).status, 200);
    const Answer refused = client.send("PUT", path, std::string(1001, 'y'));
    EXPECT_EQ(refused.status, 413);
    EXPECT_EQ(refused.json()["errorId"], "PayloadTooLarge");
    for (const std::size_t size : {1001U, 1000U}) {
        const std::string text(size, 'x');
        std::string coded(text.size(), '\0');
        uLongf length = coded.size();
        compress(reinterpret_cast<Bytef*>(coded.data()), &length, reinterpret_cast<const Bytef*>(text.data()), size);
        coded.resize(length);
        EXPECT_EQ(client.send("PUT", path, coded, {{"Content-Encoding", "deflate"}}).status, size > 1000 ? 413 : 200);
    }

    httplib::Client chunked("127.0.0.1", server.port());
    int calls = 0;
    const httplib::Result result = chunked.Put(
        root + path,
        [&](std::size_t, httplib::DataSink& sink) {
            const std::string part(calls == 2 ? 10 : 800, 'z'); // the last alone would be small enough
            sink.write(part.data(), part.size());
            if (++calls == 3) {
                sink.done();
            }
            return true;
        },
        "application/octet-stream");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 413);
    EXPECT_EQ(client.send("GET", path).body, std::string(1000, 'x'));
}

TEST(RepositoryServerTest, ServesBelowABasePath) {
    ServerOptions options;
    options.basePath = "gate/way/";
    const Server server(options);
    EXPECT_EQ(server.url(), "http://127.0.0.1:" + std::to_string(server.port()) + "/gate/way");
    Client client(server);
    client.insertId("/gate/way" + root + "S/C");
    EXPECT_EQ(client.send("GET", "/gate/way" + root + "S/C").json()["instances"].size(), 1U);
    EXPECT_EQ(client.send("GET", root + "S/C").status, 404);
}

TEST(RepositoryServerTest, UrlOfIpv6HasBrackets) {
    ServerOptions options;
    options.host = "::1";
    const Server server(options);
    EXPECT_EQ(server.url(), "http://[::1]:" + std::to_string(server.port()));
    httplib::Client client("::1", server.port());
    const httplib::Result result = client.Get(root + "S/C");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 200);
}

TEST(RepositoryServerTest, KeepsEverythingInItsFile) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.database = folder.file("repository.db");
    std::string path;
    Json before;
    {
        const Server server(options);
        Client client(server);
        path = "DynamicSchema/Issue/" + client.insertId("DynamicSchema/Issue", {{"a", 1}});
        client.insertId(path + "/FormData-forward-Forms_EC_Mapping.Form", {{"Name", "f"}});
        client.insertId(path + "/_Comment", {{"Text", "t"}});
        client.send("PUT", path + "/$file", std::string("\0\1", 2));
        before = client.get(path + "/");
    }
    const Server server(options);
    Client client(server);
    EXPECT_EQ(client.get(path + "/"), before);
    EXPECT_EQ(before["instance"]["relationshipInstances"].size(), 1U);
    EXPECT_EQ(client.listed(path + "/_Comment", "Text"), Json({"t"}));
    EXPECT_EQ(client.send("GET", path + "/$file").body, std::string("\0\1", 2));
    EXPECT_EQ(client.list("DynamicSchema/BaseClass!poly").size(), 1U);
}

TEST_F(RepositoryTest, ConcurrentChangesAreEachMadeOnce) {
    const std::string path = "S/Counter/" + m_client.insertId("S/Counter", {{"n", 0}}) + "/";
    constexpr int threadCount = 6;
    constexpr int rounds = 8;
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            Client client(m_server);
            for (int done = 0; done < rounds;) {
                const Json seen = client.get(path)["instance"];
                const std::string body =
                    Client::envelope({{"n", seen["properties"]["n"].get<int>() + 1}}, seen["eTag"]);
                const int status = client.send("POST", path, body).status;
                ASSERT_TRUE(status == 200 || status == 409) << status;
                done += status == 200 ? 1 : 0;
                refused += status == 409 ? 1 : 0;
                client.insertId("S/Item", {{"thread", i}});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(m_client.get(path)["instance"]["properties"]["n"], threadCount * rounds);
    std::set<std::string> ids;
    for (const Json& item : m_client.list("S/Item")) {
        ids.insert(item["instanceId"]);
    }
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(threadCount * rounds + refused));
}

TEST(RepositoryExecutableTest, ServesUntilASignal) {
    const TemporaryFolder folder;
    for (const int number : {SIGTERM, SIGINT}) {
        Process process(folder, {"--database", folder.file("db"), "--base-path", "/x"});
        const std::string url = process.firstLine();
        const std::string start = "http://127.0.0.1:";
        ASSERT_EQ(url.substr(0, start.size()), start) << process.error();
        EXPECT_EQ(url.substr(url.size() - 2), "/x");
        Client client(std::stoi(url.substr(start.size())));
        client.insertId("/x" + root + "S/C");
        EXPECT_EQ(client.list("/x" + root + "S/C").size(), number == SIGTERM ? 1U : 2U);
        process.signal(number);
        EXPECT_EQ(process.exitCode(), 0);
    }
}

TEST(RepositoryExecutableTest, TakesWhatATestNeedsAsOptions) {
    const TemporaryFolder folder;
    std::ofstream(folder.file("seed")) << R"({"instances":[{"location":"here","schemaName":"S","className":"C"}]})";
    Process process(folder, {"--token", "t", "--token-calls", "2", "--token-seconds", "60", "--seed",
                             folder.file("seed"), "--control"});
    const std::string url = process.firstLine();
    ASSERT_FALSE(url.empty()) << process.error();
    Client client(std::stoi(url.substr(url.rfind(':') + 1)));
    const httplib::Headers token{{"Authorization", "Bearer t"}};
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // seconds are no milliseconds
    EXPECT_EQ(client.send("GET", "S/C").status, 401);
    EXPECT_EQ(client.send("GET", "S/C", "", token).json()["instances"].size(), 1U);
    EXPECT_EQ(client.send("GET", "/_control/requests").json()["requests"].size(), 2U);
    EXPECT_EQ(client.send("GET", "S/C", "", token).status, 200);
    EXPECT_EQ(client.send("GET", "S/C", "", token).status, 401);
}

TEST(RepositoryExecutableTest, PassesTheTourOfTheClientLibrary) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.database = folder.file("db");
    const Server server(options);
    Process tour(folder, {server.url()}, VARNEL_FORMS_TOUR);
    EXPECT_EQ(tour.exitCode(), 0) << tour.output() << tour.error();
}

TEST(RepositoryExecutableTest, FailsWithAReason) {
    const TemporaryFolder folder;
    const std::string text(5000, 'x');
    std::ofstream(folder.file("text")) << text;
    // Repositories with another mark of their program, or of their layout, in the file's head.
    for (const auto& [name, offset] : {std::pair("foreign", 68), std::pair("later", 60)}) {
        ServerOptions options;
        options.database = folder.file(name);
        { const Server server(options); }
        std::fstream file(options.database, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(offset);
        file.write("\1\2\3\4", 4);
    }
    const Server server;
    for (const auto& [arguments, reason] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"--port", std::to_string(server.port())}, "in use"},
             {{"--port", "70000"}, "70000"},
             {{"--database", folder.file("text")}, "not a database"},
             {{"--database", folder.file("foreign")}, "another program"},
             {{"--database", folder.file("later")}, "layout version 16909060"},
             {{"--database", folder.file("missing/db")}, "unable to open"},
             {{"--certificate", folder.file("text")}, "both"},
             {{"--token-calls", "1"}, "--token"},
             {{"--seed", folder.file("none")}, "none"},
             {{"--seed", folder.file("text")}, "not JSON"},
             {{"--nonsense"}, "--nonsense"}}) {
        Process process(folder, arguments);
        EXPECT_GT(process.exitCode(), 0) << arguments[0];
        EXPECT_NE(process.error().find(reason), std::string::npos) << process.error();
    }
    std::ifstream kept(folder.file("text"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), text);
}

} // namespace
} // namespace repository_test
