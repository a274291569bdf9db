// PostgreSQL's client library, loaded when the first base on a server is asked for and not with the
// program: it brings a dozen libraries and four megabytes of memory with it, and most stations have
// a file.
#pragma once

#include <libpq-fe.h>

namespace zemo {

// clang-format off
#define ZEMO_PQ_FUNCTIONS(Z) \
  Z(PQcancel) Z(PQclear) Z(PQcmdStatus) Z(PQconnectPoll) Z(PQconnectStartParams) Z(PQconnectdbParams) Z(PQconninfoFree) Z(PQconsumeInput) \
  Z(PQconninfoParse) Z(PQdb) Z(PQerrorMessage) Z(PQexec) Z(PQexecPrepared) Z(PQfinish) \
  Z(PQfname) Z(PQfreeCancel) Z(PQfreemem) Z(PQftype) Z(PQgetCancel) Z(PQgetResult) \
  Z(PQgetisnull) Z(PQgetlength) Z(PQgetvalue) Z(PQhost) Z(PQnfields) Z(PQnotifies) Z(PQntuples) \
  Z(PQparameterStatus) Z(PQprepare) Z(PQputCopyData) Z(PQputCopyEnd) Z(PQresultErrorField) \
  Z(PQresultStatus) Z(PQsendQueryPrepared) Z(PQsetNoticeProcessor) Z(PQsetSingleRowMode) \
  Z(PQsocket)   Z(PQstatus)
// clang-format on

// Each under the name that the library gives it.
struct ClientLibrary {
#define ZEMO_PQ_MEMBER(name) decltype(&::name) name;
  ZEMO_PQ_FUNCTIONS(ZEMO_PQ_MEMBER)
#undef ZEMO_PQ_MEMBER
};

// Throws StoreError where the library is not installed. Thread: any.
const ClientLibrary& Pq();

}  // namespace zemo
