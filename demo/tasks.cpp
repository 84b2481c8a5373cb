#include "tasks.h"

#include "files.h"

namespace demo {

namespace {

std::optional<std::string> readFile(const std::string& folder, int id, const char* name)
{
    return readText(folder + "/" + std::to_string(id) + "/" + name);
}

} // namespace

std::optional<TaskStat> statOf(const std::string& folder, int id)
{
    return parseTaskStat(readFile(folder, id, "stat").value_or(""));
}

bool isAlive(const std::string& folder, const TaskKey& task)
{
    const auto stat = statOf(folder, task.id);
    return stat && stat->start == task.start;
}

std::optional<std::string> readOf(const std::string& folder, const TaskKey& task, const char* file)
{
    auto text = readFile(folder, task.id, file);
    // Looked at afterwards: what was there then was there while its file was read.
    return isAlive(folder, task) ? text : std::nullopt;
}

} // namespace demo
