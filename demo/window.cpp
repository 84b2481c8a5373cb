#include "window.h"

#include "display_loss.h"

#include <GLFW/glfw3.h>
#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl3.h>
#include <imgui.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace demo {

namespace {

constexpr int kWidth = 1400;
constexpr int kHeight = 1050;
constexpr float kDoubleClickTime = 0.3f; ///< seconds

std::string& lastGlfwError()
{
    static std::string text;
    return text;
}

void setColors()
{
    ImGui::StyleColorsDark();
    ImGuiStyle& style = ImGui::GetStyle();
    style.WindowRounding = 5;
    style.FrameRounding = 3;
    style.GrabRounding = 3;
    style.ScrollbarRounding = 4;
    style.Colors[ImGuiCol_WindowBg] = ImVec4(0.06f, 0.075f, 0.10f, 0.94f);
    style.Colors[ImGuiCol_PopupBg] = ImVec4(0.09f, 0.11f, 0.15f, 0.98f);
    style.Colors[ImGuiCol_Border] = ImVec4(0.25f, 0.30f, 0.37f, 0.55f);
    style.Colors[ImGuiCol_TitleBg] = ImVec4(0.08f, 0.10f, 0.14f, 1);
    style.Colors[ImGuiCol_TitleBgActive] = ImVec4(0.11f, 0.17f, 0.26f, 1);
    style.Colors[ImGuiCol_FrameBg] = ImVec4(0.15f, 0.20f, 0.28f, 1);
    style.Colors[ImGuiCol_Button] = ImVec4(0.15f, 0.22f, 0.33f, 1);
    style.Colors[ImGuiCol_Header] = ImVec4(0.18f, 0.32f, 0.50f, 0.85f);
    // Where the pointer or the keys are: dark enough for the panel's coloured texts.
    style.Colors[ImGuiCol_ButtonHovered] = ImVec4(0.14f, 0.28f, 0.45f, 1);
    style.Colors[ImGuiCol_HeaderHovered] = ImVec4(0.11f, 0.22f, 0.36f, 1);
}

} // namespace

Window::Window(const char* layoutFile)
{
    glfwSetErrorCallback([](int, const char* text) { lastGlfwError() = text; });
    if (!glfwInit())
        throw std::runtime_error("no window: " + lastGlfwError());
    watchForDisplayLoss(m_displayLost);
    createWindow();
    if (!m_window) {
        glfwTerminate();
        throw std::runtime_error("no window: " + lastGlfwError());
    }
    createGui(layoutFile);
}

void Window::createWindow()
{
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    int x = 0, y = 0, width = kWidth, height = kHeight;
    if (GLFWmonitor* monitor = glfwGetPrimaryMonitor())
        glfwGetMonitorWorkarea(monitor, &x, &y, &width, &height);
    m_window = glfwCreateWindow(std::min(width, kWidth), std::min(height, kHeight),
                                "A program that watches itself", nullptr, nullptr);
    if (!m_window)
        return;
    glfwMakeContextCurrent(m_window);
    glfwSwapInterval(1);
    glfwSetWindowUserPointer(m_window, this);
    glfwSetKeyCallback(m_window, [](GLFWwindow* handle, int key, int, int action, int) {
        const auto& window = *static_cast<Window*>(glfwGetWindowUserPointer(handle));
        const bool pressed = action == GLFW_PRESS || action == GLFW_REPEAT;
        if (pressed && window.m_onKey && !ImGui::GetIO().WantTextInput)
            (*window.m_onKey)(key);
    });
}

void Window::createGui(const char* layoutFile)
{
    ImGui::CreateContext();
    ImGui::GetIO().IniFilename = layoutFile;
    ImGui::GetIO().ConfigFlags |=
        ImGuiConfigFlags_NavEnableKeyboard; // Control and Tab lead from window to window
    setColors();
    ImGui_ImplGlfw_InitForOpenGL(m_window, true); // goes on to the callback above
    ImGui_ImplOpenGL3_Init("#version 150");
}

Window::~Window()
{
    ImGui_ImplOpenGL3_Shutdown();
    ImGui_ImplGlfw_Shutdown();
    ImGui::DestroyContext();
    glfwDestroyWindow(m_window);
    glfwTerminate();
}

bool Window::closed() const
{
    return m_displayLost || glfwWindowShouldClose(m_window) != 0;
}

void Window::pollEvents(const std::function<void(int)>& onKey)
{
    m_onKey = &onKey;
    glfwPollEvents();
    m_onKey = nullptr;
}

void Window::beginFrame()
{
    ImGuiIO& io = ImGui::GetIO();
    const ImVec2 size = io.DisplaySize;
    ImGui_ImplOpenGL3_NewFrame();
    ImGui_ImplGlfw_NewFrame();
    if (m_displayLost) // GLFW tells any size then
        io.DisplaySize = ImVec2(std::max(size.x, 0.0f), std::max(size.y, 0.0f));
    // A double click takes three frames, press, release and press, and on a busy machine they may be long.
    io.MouseDoubleClickTime = std::max(kDoubleClickTime, 4 * io.DeltaTime);
    ImGui::NewFrame();
}

void Window::endFrame()
{
    ImGui::Render();
}

void Window::render()
{
    int width = 0, height = 0;
    glfwGetFramebufferSize(m_window, &width, &height);
    glViewport(0, 0, width, height);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
}

void Window::present()
{
    glfwSwapBuffers(m_window);
}

} // namespace demo
