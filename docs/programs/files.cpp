#include "Setting.h"

#include <cstdio>
#include <fstream>

using namespace VarnelAPI::Forms;

namespace {

// [download]
void download(const api::AttachmentApi& attachments, const utility::string_t& project, const utility::string_t& id,
              const utility::string_t& path, const std::function<void(const transport::Progress&)>& show) {
    kit::download(attachments, project, id, path, transport::CallOptions().onProgress(show)).get();
}
// [download]

// [memory]
std::string contents(const api::AttachmentApi& attachments, const utility::string_t& project,
                     const utility::string_t& id) {
    return kit::bytesOf(attachments.fILEGET_DynamicSchemaAttachment_instanceId(project, id)).get();
}
// [memory]

// [upload]
void attach(const api::AttachmentApi& attachments, const utility::string_t& project, const utility::string_t& issueId,
            const utility::string_t& path) {
    model::DynamicSchemaAttachment attachment;
    attachment.setName(path);
    const auto stored = kit::stored(attachments.insert_DynamicSchemaAttachment(project, _XPLATSTR("Defect"), issueId,
                                                                               kit::envelope(attachment)))
                            .get();
    kit::upload(attachments, project, stored->getInstanceId(), kit::FileContent::ofFile(path)).get();
}
// [upload]

void thereAndBack(const api::AttachmentApi& attachments, const utility::string_t& project, const utility::string_t& id,
                  const utility::string_t& path, const pplx::cancellation_token& token,
                  const std::function<void(const transport::Progress&)>& show) {
    // [kit]
    kit::upload(attachments, project, id, kit::FileContent::ofFile(path).mediaType(_XPLATSTR("image/jpeg"))).get();
    kit::download(attachments, project, id, path, transport::CallOptions().cancelOn(token).onProgress(show)).get();
    // [kit]
}

} // namespace

int main() {
    Setting here;
    const api::AttachmentApi attachments(here.client);
    const utility::string_t project = _XPLATSTR("tower");
    const char* const file = "guide-picture.jpg";
    const utility::string_t path = utility::conversions::to_string_t(file);
    std::ofstream(file) << "what was there";
    uint64_t bytes = 0;
    const auto show = [&](const transport::Progress& progress) { bytes = progress.bytes; };
    download(attachments, project, _XPLATSTR("photo"), path, show);
    std::cout << std::ifstream(file).rdbuf() << ", " << bytes << " bytes\n";
    attach(attachments, project, _XPLATSTR("crack"), path);
    thereAndBack(attachments, project, _XPLATSTR("photo"), path, pplx::cancellation_token::none(), show);
    std::remove(file);
    for (const auto& one :
         kit::pages(attachments, &api::AttachmentApi::select_DynamicSchemaAttachment, project, "crack")) {
        std::cout << contents(attachments, project, one->getInstanceId()) << '\n';
    }
    return here.printed("The picture, 11 bytes\nThe picture\nThe picture\n");
}
