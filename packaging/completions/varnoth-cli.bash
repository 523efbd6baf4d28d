# bash completion for varnoth-cli. It needs no functions of the bash-completion package.

# Proposes folders, and files whose extension matches a regular expression in lower case.
_varnoth_cli_files() {
    local name
    mapfile -t COMPREPLY < <(compgen -d -- "$cur")
    while IFS= read -r name; do
        [[ ! -d $name && ${name,,} =~ \.($1)$ ]] && COMPREPLY+=("$name")
    done < <(compgen -f -- "$cur")
    compopt -o filenames 2>/dev/null
}

_varnoth_cli_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}

_varnoth_cli_value() {
    local values files
    case $1 in
    --append | --replace) _varnoth_cli_files "$pictures" ;;
    --background) _varnoth_cli_words checkers ;;
    --dither) _varnoth_cli_words "none ordered floyd-steinberg blue-noise" ;;
    --fit) _varnoth_cli_words "stretch contain crop" ;;
    --format) _varnoth_cli_words "bmp gif pcx png tga" ;;
    --mode)
        cur=${cur^^}
        _varnoth_cli_words "NORMAL ADDITIVE INDEXALPHA ALPHATEST"
        ;;
    --origin) _varnoth_cli_words center ;;
    --output | -o) _varnoth_cli_files spr ;;
    --palette)
        mapfile -t values < <(compgen -W "best editor" -- "$cur")
        _varnoth_cli_files "spr|pal|gpl|act|$pictures"
        COMPREPLY+=("${values[@]}")
        ;;
    --sync) _varnoth_cli_words "synchronized random" ;;
    --transparent) _varnoth_cli_words "alpha corner none" ;;
    --type)
        cur=${cur^^}
        _varnoth_cli_words "VP_PARALLEL_UPRIGHT FACING_UPRIGHT VP_PARALLEL ORIENTED VP_PARALLEL_ORIENTED"
        ;;
    esac
}

_varnoth_cli_options() {
    local picture="--fit --transparent --dither --dither-strength --jobs -q --quiet"
    local sprite="--type --mode --sync --origin"
    case $1 in
    make) _varnoth_cli_words "-h --help --size --colors --color --palette --force $picture $sprite" ;;
    info) _varnoth_cli_words "-h --help --json" ;;
    check) _varnoth_cli_words "-h --help --json -q --quiet" ;;
    extract) _varnoth_cli_words "-h --help --format --frames --alpha --force -q --quiet" ;;
    edit)
        _varnoth_cli_words "-h --help -o --output --remove --move --order --reverse --append --repalette --replace \
            --force $picture $sprite"
        ;;
    preview) _varnoth_cli_words "-h --help --fps --scale --background --force -q --quiet" ;;
    thumbnail) _varnoth_cli_words "-h --help --force" ;;
    *) _varnoth_cli_words "-h --help --version" ;;
    esac
}

# The files of a subcommand, by the number of those before.
_varnoth_cli_operand() {
    case $1:$2 in
    :*) _varnoth_cli_words "make info check extract edit preview thumbnail" ;;
    make:0 | info:* | check:* | extract:0 | edit:0 | preview:0 | thumbnail:0) _varnoth_cli_files spr ;;
    make:*) _varnoth_cli_files "$pictures" ;;
    extract:1)
        mapfile -t COMPREPLY < <(compgen -d -- "$cur")
        compopt -o filenames 2>/dev/null
        ;;
    preview:1) _varnoth_cli_files "gif|png" ;;
    thumbnail:1) _varnoth_cli_files png ;;
    esac
}

_varnoth_cli() {
    local pictures="a?png|bmp|dib|gif|icb|jfif|jpe?g?|pcx|tga|tiff?|vda|vst|webp|pbm|pgm|ppm|xbm|xpm|ico|svgz?"
    local cur=${COMP_WORDS[COMP_CWORD]} command='' option='' last_option='' after_equals='' files=0 word
    COMPREPLY=()
    # bash makes "=" a word of its own, in --option=value as in --replace N=PICTURE.
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word == = ]]; then
            after_equals=yes
        elif [[ $after_equals ]]; then
            after_equals='' option=''
        elif [[ $word == -?* && ! $option ]]; then
            case $word in
            -h | --help | --version | --force | -q | --quiet | --json | --alpha | --reverse | --repalette)
                last_option=''
                ;;
            *) option=$word last_option=$word ;;
            esac
        elif [[ $option ]]; then
            option=''
        elif [[ ! $command ]]; then
            command=$word
        elif [[ $last_option != --append ]]; then
            files=$((files + 1))
        fi
    done
    if [[ $cur == = ]]; then
        cur='' after_equals=yes
    fi
    if [[ $option ]]; then
        # The frame number of N=PICTURE has no completion.
        [[ $option == --replace ]] || _varnoth_cli_value "$option"
    elif [[ $after_equals && $last_option == --replace ]]; then
        _varnoth_cli_value --replace
    elif [[ $cur == -* ]]; then
        _varnoth_cli_options "$command"
    elif [[ $last_option == --append ]]; then
        # Another picture, or the sprite, which may follow them.
        ((files > 0)) || pictures+="|spr"
        _varnoth_cli_files "$pictures"
    else
        _varnoth_cli_operand "$command" "$files"
    fi
}

complete -F _varnoth_cli varnoth-cli
