# Sourced by the scripts: Dear ImGui's sources, as the distribution's source package has them.

# Address, suite and component of the package: "500 <address> bookworm/main amd64 Packages"
imgui_origin() {
    apt-cache policy libimgui-dev | sed -nE 's/^ +[0-9]+ (https?:[^ ]+) ([^ /]+)\/([^ ]+) .*/\1 \2 \3/p' | head -n 1
}

# imgui_source <folder> [suite]: unpacks them there, once; this system's, or those of another suite, as "sid". Changes
# nothing in the system's apt, and needs rights only where that has no lists yet.
imgui_source() {
    local folder=$1 suite=${2:-} origin apt options
    [[ ! -f $folder/imgui.h ]] || return 0
    origin=$(imgui_origin)
    if [[ -z $origin ]]; then
        apt-get -qq update
        origin=$(imgui_origin)
    fi
    [[ -z $suite ]] || origin=$(awk -v suite="$suite" '{ $2 = suite; print }' <<<"$origin")
    rm -rf "$folder" "$folder.apt"
    mkdir -p "$folder.apt"/{lists,cache}/partial
    apt=$(realpath "$folder.apt")
    echo "deb-src $origin" >"$apt/sources.list"
    options=(-qq -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=-
        -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o APT::Sandbox::User=)
    (
        cd "$apt"
        apt-get "${options[@]}" update
        apt-get "${options[@]}" source --download-only imgui
        dpkg-source --extract imgui_*.dsc unpacked
    )
    mv "$apt/unpacked" "$folder"
    rm -rf "$apt"
}
