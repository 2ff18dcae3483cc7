#pragma once

/// Every public class of the library.

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/api/AttachmentApi.h>
#include <VarnelAPI/Forms/api/AuditRecordApi.h>
#include <VarnelAPI/Forms/api/CommentApi.h>
#include <VarnelAPI/Forms/api/ExternalFileApi.h>
#include <VarnelAPI/Forms/api/FileApi.h>
#include <VarnelAPI/Forms/model/BinaryBody.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAttachment.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditRecord.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditValue.h>
#include <VarnelAPI/Forms/model/DynamicSchemaFile.h>
#include <VarnelAPI/Forms/model/DynamicSchema_Comment.h>
#include <VarnelAPI/Forms/model/DynamicSchema_ExternalFile.h>
#include <VarnelAPI/Forms/model/ErrorSchema.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>
#include <VarnelAPI/Forms/model/JsonBody.h>
#include <VarnelAPI/Forms/model/ModelBase.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>
#include <VarnelAPI/Forms/model/Object.h>
#include <VarnelAPI/Forms/model/VarnelApiException.h>
