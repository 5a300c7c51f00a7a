#include "bench/CJsonProgram.h"

#include "bench/CJsonMessages.h"

namespace OrvuBench {

void CJsonProgram::answer(int connection, const char* request)
{
    const Tree tree(cJSON_Parse(request));
    const std::string type = typeOf(tree.get());
    Text text;
    if (type == "serviceTime" && readTime(tree.get())) text = writeTime(broadcastTime());
    if (type == "serviceList" && readList(tree.get())) text = writeList(channels());
    if (text) sendText(connection, text.get());
}

bool CJsonProgram::askTime() const
{
    AnswerRoom room;
    const Text request = writeTime("");
    const Tree tree(cJSON_Parse(exchange(server_.port(), request.get(), room).data()));
    if (typeOf(tree.get()) != "serviceTime") return false;
    const std::optional<std::string> time = readTime(tree.get());
    return time && *time == broadcastTime();
}

bool CJsonProgram::askList() const
{
    AnswerRoom room;
    const Text request = writeList({});
    const Tree tree(cJSON_Parse(exchange(server_.port(), request.get(), room).data()));
    if (typeOf(tree.get()) != "serviceList") return false;
    const std::optional<std::vector<Channel>> list = readList(tree.get());
    return list && list->size() == channels().size();
}

}  // namespace OrvuBench
