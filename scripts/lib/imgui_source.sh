# Sourced by the scripts: Dear ImGui's sources, as the distribution's source package has them.

# imgui_source <folder>: unpacks them there, once. Needs no rights and changes nothing in the system's apt.
imgui_source() {
    local folder=$1 apt uri suite component
    [[ ! -f $folder/imgui.h ]] || return 0
    # "500 http://deb.debian.org/debian bookworm/main amd64 Packages"
    read -r uri suite < <(apt-cache policy libimgui-dev | sed -nE 's/^ +[0-9]+ (http[^ ]+) ([^ ]+) .*/\1 \2/p')
    component=${suite#*/}
    rm -rf "$folder" "$folder.apt"
    mkdir -p "$folder.apt"/{lists,cache}/partial
    apt=$(realpath "$folder.apt")
    echo "deb-src $uri ${suite%%/*} $component" >"$apt/sources.list"
    (
        cd "$apt"
        local options=(-qq -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=-
            -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o APT::Sandbox::User=)
        apt-get "${options[@]}" update
        apt-get "${options[@]}" source --download-only imgui
        dpkg-source --extract imgui_*.dsc unpacked
    )
    mv "$apt/unpacked" "$folder"
    rm -rf "$apt"
}
